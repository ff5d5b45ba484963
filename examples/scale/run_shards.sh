#!/usr/bin/env bash
# Runs a command of portraitcut over a long list of files with GNU Parallel, on this machine or on many hosts.
# docs/scale.md tells how to use it and why it works as it does.
set -eu -o pipefail

usage() {
  cat >&2 <<'END'
usage: run_shards.sh [-n FILES] [-S HOSTS] [-t SECONDS] [-m MIB] LIST RUN portraitcut COMMAND [OPTION...]

LIST has one path a line. RUN is a folder for this run's state and records; all hosts must see it, the pictures and
the outputs under the same paths. The same call goes on with a run that was interrupted.

  -n FILES     paths in a shard, 1000 unless told otherwise
  -S HOSTS     as GNU Parallel's --sshlogin: 16/alpha,16/beta runs 16 shards at a time on each; : is this machine
  -t SECONDS   a shard that takes longer is ended and tried again, 3600 unless told otherwise
  -m MIB       most address space of a worker, so that a picture that needs more fails and not the host

Leaves in RUN: records.jsonl, the records in the order of LIST; failed.txt, the files that failed; missing.txt, those
of shards that gave nothing after three tries; joblog and errors/. Exit code 0: all is well; 1: a file failed;
2: wrong use; 3: shards are missing.
END
  exit 2
}

complain() { echo "run_shards.sh: $*" >&2; exit 2; }

files=1000 hosts=: seconds=3600 memory=
while getopts n:S:t:m: option; do
  case $option in
    n) files=$OPTARG ;;
    S) hosts=$OPTARG ;;
    t) seconds=$OPTARG ;;
    m) memory=$OPTARG ;;
    *) usage ;;
  esac
done
shift $((OPTIND - 1))
[ $# -ge 3 ] || usage
[[ "$files$seconds${memory:-1}" =~ ^[0-9]+$ ]] || usage
command -v parallel >/dev/null || complain "GNU Parallel is not installed"
[ -r "$1" ] || complain "cannot read $1"
list=$1
mkdir -p "$2"
run=$(cd "$2" && pwd)
shift 2

exec 9>"$run/lock"
flock -n 9 || complain "another call is working on $run"

paths() { grep -av '^$' "$list"; }

# A list half split must not pass for a whole one.
split_list() {
  rm -rf "$run/shards.part"
  mkdir -p "$run/shards.part" "$run/records" "$run/begun" "$run/errors"
  paths | split -l "$files" -d -a 8 - "$run/shards.part/"
  mv "$run/shards.part" "$run/shards"
}

# What a host runs for one shard. Records get their name when they are whole, so what is there is right. The first try
# never replaces a file; a later one replaces what the one before has left. An earlier try whose connection was lost
# may still be at work and find its outputs there: it sees that another has begun, and keeps its records to itself.
shard_script() {
  printf '#!/usr/bin/env bash\nset -u\ncommand=(%s)\nrun=%q seconds=%q memory=%q\ncd %q || exit 1\n' \
    "$(printf '%q ' "$@")" "$run" "$seconds" "$memory" "$PWD"
  cat <<'END'
shard=$1 records=$run/records/$1.jsonl try=$(uname -n).$$.$RANDOM
[ ! -e "$records" ] || exit 0
replace=
[ ! -e "$run/begun/$shard" ] || replace=--force
echo "$try" >"$run/begun/$shard" || exit 1
[ -z "$memory" ] || ulimit -v $((memory * 1024)) || exit 1
part=$run/records/.$shard.$try
trap 'rm -f "$part"' EXIT
timeout -k 10 "$seconds" "${command[@]}" --jobs 1 --quiet $replace --files-from - \
  <"$run/shards/$shard" >"$part" 2>>"$run/errors/$shard"
code=$?
[ $code -le 1 ] || exit $code
[ "$(wc -l <"$part")" = "$(wc -l <"$run/shards/$shard")" ] || exit 1
[ "$(cat "$run/begun/$shard")" = "$try" ] || exit 1
mv "$part" "$records"
END
}

# Resumed with other options the records would not fit together.
prepare() {
  trap 'rm -f "$run/shard.new"' EXIT
  shard_script "$@" >"$run/shard.new"
  if [ -d "$run/shards" ]; then
    cmp -s <(grep -v '^run=' "$run/shard.new") <(grep -v '^run=' "$run/shard") ||
      complain "$run was begun with another command or in another folder"
    cmp -s <(paths) <(cd "$run/shards" && find . -type f -print0 | sort -z | xargs -0 cat) ||
      complain "$run was begun with another list"
  fi
  chmod +x "$run/shard.new"
  mv "$run/shard.new" "$run/shard"
  [ -d "$run/shards" ] || split_list
}

shards_left() { comm -23 <(ls "$run/shards") <(ls "$run/records" | sed -n 's/\.jsonl$//p'); }

# Records stand in the order of their lists; with quotes in names escaped, the text below is in no other place.
collect() {
  : >"$run/records.new"
  : >"$run/failed.new"
  for shard in "$run"/shards/*; do
    records=$run/records/${shard##*/}.jsonl
    [ -e "$records" ] || continue
    cat "$records" >>"$run/records.new"
    grep -aq '"status":"failed"' "$records" || continue
    grep -an '"status":"failed"' "$records" | cut -d: -f1 | sed 's/$/p/' | sed -n -f - "$shard" >>"$run/failed.new"
  done
  shards_left | (cd "$run/shards" && xargs -r cat) >"$run/missing.txt"
  mv "$run/records.new" "$run/records.jsonl"
  mv "$run/failed.new" "$run/failed.txt"
}

prepare "$@"
rm -f "$run"/records/.[0-9]*
# The host ends a shard in time; where it is gone without a word, its connection is ended here.
shards_left | parallel --will-cite --sshlogin "$hosts" --retries 3 --timeout $((seconds + 60)) \
  --joblog "+$run/joblog" --quote "$run/shard" {} 9>&- || true
collect
echo "$(wc -l <"$run/records.jsonl") records, $(wc -l <"$run/failed.txt") files failed," \
  "$(wc -l <"$run/missing.txt") missing" >&2
[ ! -s "$run/missing.txt" ] || exit 3
[ ! -s "$run/failed.txt" ] || exit 1

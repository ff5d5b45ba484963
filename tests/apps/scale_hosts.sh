#!/usr/bin/env bash
# usage: scale_hosts.sh PROGRAM PICTURE FILES   (as root; needs parallel, openssh-server, iproute2)
#
# Cuts PICTURE, under FILES names, on two hosts: network namespaces with addresses and an ssh server of their own. Once
# one host has done a shard and is in the middle of another, its processes are killed, its server too, and its link is
# cut. The results must be those of a single run, byte for byte.
set -eu -o pipefail

unshare --net true 2>/dev/null || { echo "skipped: network namespaces need root"; exit 0; }
program=$(realpath "$1") picture=$(realpath "$2") files=$3
recipe=$(realpath "$(dirname "$0")/../../examples/scale/run_shards.sh")
folder=$(mktemp -d)
tag=pc$$

# Some end with their parents before they are reached.
signal_host() { ip netns pids "$tag$2" | xargs -r kill "$1" 2>/dev/null || true; }

stop_host() {
  signal_host -KILL "$1"
  ip link delete "$tag$1" 2>/dev/null || true
}

clean_up() {
  set +e
  jobs -p | xargs -r kill
  for host in 1 2; do
    stop_host $host
    ip netns delete $tag$host
  done
  rm -rf "$folder"
} 2>/dev/null
trap clean_up EXIT

# A host NUMBER with the address 198.18.NUMBER.2, of the network for tests between devices.
start_host() {
  local host=$tag$1
  ip netns add "$host"
  ip link add "$host" type veth peer name eth0 netns "$host"
  ip address add "198.18.$1.1/30" dev "$host"
  ip link set "$host" up
  ip -n "$host" address add "198.18.$1.2/30" dev eth0
  ip -n "$host" link set lo up
  ip -n "$host" link set eth0 up
  ip netns exec "$host" /usr/sbin/sshd -f "$folder/sshd_config"
}

cd "$folder"
mkdir -p /run/sshd in
ssh-keygen -q -t ed25519 -N '' -f key
cat >sshd_config <<END
HostKey $folder/key
AuthorizedKeysFile $folder/key.pub
StrictModes no
PermitRootLogin prohibit-password
PidFile none
# Nothing of this account's own shell settings.
SetEnv HOME=$folder
END
start_host 1
start_host 2

for ((number = 0; number < files; ++number)); do cp "$picture" in/$number.jpg; done
printf '%s\n' in/* >list
cut=("$program" cut -p fast --size 300x400)
"${cut[@]}" -o single --quiet --files-from - <list | sed 's:single/:many/:' >single.jsonl

connect="ssh -i $folder/key -o BatchMode=yes -o StrictHostKeyChecking=no -o UserKnownHostsFile=/dev/null"
connect+=" -o LogLevel=ERROR -o ConnectTimeout=5 -o ServerAliveInterval=2"
PARALLEL_SSH=$connect "$recipe" -n 20 -S 2/198.18.1.2,2/198.18.2.2 list run "${cut[@]}" -o many &
call=$!
# Records of a shard that host 2 is at work on: the name of their file has a process of that host in it.
half_done() {
  local part
  for part in run/records/.0*; do
    [ -s "$part" ] && [ "$(wc -l <"$part")" -lt 20 ] || continue
    ip netns pids ${tag}2 | grep -qx "$(rev <<<"$part" | cut -d. -f2 | rev)" && echo "$part" && return
  done
  return 1
} 2>/dev/null

# It is frozen for the look, so that what was seen still holds when it is killed.
until grep -q '198.18.2.2.*run/shard' run/joblog 2>/dev/null; do sleep 0.05; done
until part=$(half_done); do
  signal_host -CONT 2
  sleep 0.1
  signal_host -STOP 2
done
echo "killed host 2 when $(ls run/records | wc -l) of $(ls run/shards | wc -l) shards were done," \
  "and $(wc -l <"$part") files of one that it had begun"
stop_host 2
wait $call || { echo "the call failed with $?"; exit 1; }

cmp single.jsonl run/records.jsonl
diff -r single many
echo "shards by host and exit code:"
cut -f2,7 run/joblog | sort | uniq -c
echo "$files portraits and records, the same as those of a single run"

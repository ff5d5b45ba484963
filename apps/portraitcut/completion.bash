# Completion of portraitcut for bash. Commands, options and their values come from the program's own help.

_portraitcut_help() {
  command portraitcut ${1:+"$1"} --help 2>/dev/null
}

# What the option $2 of the command $1 takes: FILE or a|b|c, for example; nothing for a flag.
_portraitcut_value() {
  _portraitcut_help "$1" | sed -nE 's/^  (-[^,],)?(--[a-z-]+) ([A-Za-z|]+).*/,\1\2,\3/p' |
    grep -F -- ",$2," | sed 's/.*,//'
}

_portraitcut() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local commands command='' value='' choices='' index
  COMPREPLY=()
  commands=$(_portraitcut_help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z][a-z]*\).*/\1/p')
  for ((index = 1; index < COMP_CWORD; ++index)); do
    case " ${commands//$'\n'/ } " in *" ${COMP_WORDS[index]} "*) command=${COMP_WORDS[index]}; break;; esac
  done
  [[ -n $command && $previous == -* ]] && value=$(_portraitcut_value "$command" "$previous")
  case $value in
    *'|'*) choices=${value//|/ } ;;
    '' | FILE | FOLDER | PATH)
      if [[ -z $command ]]; then
        choices="$commands --help --version"
      elif [[ -z $value && $word == -* ]]; then
        choices=$(_portraitcut_help "$command" | sed -nE 's/^  (-[^,],)?(--[a-z-]+).*/\2/p')
      fi ;;
    *) return ;;
  esac
  if [[ -n $choices ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}

complete -F _portraitcut portraitcut

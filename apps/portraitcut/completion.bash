# Completion of portraitcut for bash. Commands and options come from the program's own help.

_portraitcut_help() {
  command portraitcut ${1:+"$1"} --help 2>/dev/null
}

_portraitcut() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
  local commands command choices='' index
  COMPREPLY=()
  commands=$(_portraitcut_help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z][a-z]*\).*/\1/p')
  for ((index = 1; index < COMP_CWORD; ++index)); do
    case " ${commands//$'\n'/ } " in *" ${COMP_WORDS[index]} "*) command=${COMP_WORDS[index]}; break;; esac
  done
  case $previous in
    -p|--performance) choices='fast balanced thorough' ;;
    --preset) choices='icao us avatar' ;;
    --framing) choices='face eyes head' ;;
    --pad) choices='shrink fill edge mirror refuse' ;;
    --format) choices='auto jpg png bmp' ;;
    --standard) choices='icao us' ;;
    --face) choices='largest all' ;;
    -s|--size|--dpi|--face-scale|--shift|--fill-colour|-q|--quality|-j|--jobs|--file-timeout|--threshold|--working-width|--min-face)
      return ;;
    *)
      if [[ -z $command ]]; then
        choices="$commands --help --version"
      elif [[ $word == -* ]]; then
        choices=$(_portraitcut_help "$command" | grep -oE '^ +(-[a-zA-Z0-9],)?--[a-z-]+' | grep -oE -- '--[a-z-]+')
      fi ;;
  esac
  if [[ -n $choices ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}

complete -F _portraitcut portraitcut

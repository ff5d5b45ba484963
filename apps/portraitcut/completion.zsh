#compdef portraitcut
# Completion of portraitcut for zsh. Commands, options and their values come from the program's own help.

# Adds to the caller's `specs` how _arguments is told of the options in the help of a command.
_portraitcut_specs() {
  local help option='^  (-([^,]),)?(--[a-z-]+)( ([A-Za-z|]+)([ :=][^ ]*( [^ ]+)*)?)?  +(.*)$'
  help=$(_call_program options command portraitcut $1 --help 2>/dev/null)
  # An option that is too long for its column has its text in the next line.
  local line short long value text
  for line in "${(@f)${help//$'\n'[ ](#c20,)/  }}"; do
    [[ $line =~ $option ]] || continue
    short=${match[2]:+-$match[2]} long=$match[3] value=$match[5] text=${match[8]//(#m)[][:\\]/\\$MATCH}
    case $value in
      '') ;;
      X) value=':X: :Y: ' ;;
      *'|'*) value=":value:(${(j: :)${(@M)${(s:|:)value}:#[a-z]##}})" ;;
      FOLDER) value=':folder:_files -/' ;;
      FILE | PATH) value=':file:_files' ;;
      *) value=":$value: " ;;
    esac
    specs+=("${short:+($short $long)}${long}[$text]$value")
    [[ -z $short ]] || specs+=("($short $long)${short}[$text]$value")
  done
}

_portraitcut() {
  setopt localoptions extendedglob
  local curcontext=$curcontext state line
  local -A opt_args
  local -a commands specs
  _arguments -C '(- *)'{-h,--help}'[print help]' '(- *)--version[print the version]' '1: :->command' '*:: :->rest'
  case $state in
    command)
      commands=(${${(M)${(f)"$(_call_program commands command portraitcut --help 2>/dev/null)"}:#  [a-z]##  *}/#  /})
      commands=(${commands/ ##/:})
      _describe command commands ;;
    rest)
      _portraitcut_specs $words[1]
      _arguments -s $specs '*:picture:_files' ;;
  esac
}

_portraitcut "$@"

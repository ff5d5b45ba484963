# Completion of portraitcut for fish. Commands, options and their values come from the program's own help.

command -q portraitcut
or return

set -l commands (command portraitcut --help 2>/dev/null | string match -rg '^  ([a-z]+) {2,}')
set -l no_command "not __fish_seen_subcommand_from $commands"
complete -c portraitcut -f -n $no_command -s h -l help -d 'Print help'
complete -c portraitcut -f -n $no_command -l version -d 'Print the version'

command portraitcut --help 2>/dev/null | while read -L line
    string match -rq '^  (?<name>[a-z]+) {2,}(?<text>.*)$' -- $line
    and complete -c portraitcut -f -n $no_command -a $name -d $text
end

# An option that is too long for its column has its text in the next line.
set -l option '^  (-(?<short>[^,]),)?--(?<long>[a-z-]+)( (?<value>[A-Za-z|]+)([ :=][^ ]*( [^ ]+)*)?)? {2,}(?<text>.*)$'
for name in $commands
    set -l help (command portraitcut $name --help 2>/dev/null | string collect)
    for line in (string replace -ra '\n {20,}' '  ' -- $help)
        string match -rq $option -- $line
        or continue
        set -l arguments -c portraitcut -n "__fish_seen_subcommand_from $name" -l $long -d $text
        test -n "$short"
        and set -a arguments -s $short
        switch "$value"
            case ''
            case '*|*'
                set -a arguments -x -a (string split '|' $value | string match -r '^[a-z]+$' | string join ' ')
            case FILE FOLDER PATH
                set -a arguments -r -F
            case '*'
                set -a arguments -x
        end
        complete $arguments
    end
end

#!/bin/sh
# usage: filter.sh portraitcut COMMAND --stream [OPTION...]   (or --files-from - for paths)
#
# portraitcut as the mapper of a streaming job: records in on standard input, out on standard output, one worker. Files
# that fail are records too, so they don't fail the task as the program's exit code 1 would; anything else does.
"$@" --jobs 1 --quiet
code=$?
[ $code -ne 1 ] || exit 0
exit $code

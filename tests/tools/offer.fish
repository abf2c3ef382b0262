# What fish would offer for a command line: fish --no-config offer.fish COMPLETION-FILE WORD...
source $argv[1]
or exit 1
# An empty last word stays empty, so that everything is offered.
set -l last $argv[-1]
test -z "$last"
or set last (string escape --no-quoted -- $last)
set -l line (string join ' ' -- (string escape -- $argv[2..-2]) $last)
complete -C $line | string replace -r '\t.*' ''
exit 0

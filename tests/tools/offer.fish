# What fish would offer for a command line: fish --no-config offer.fish COMPLETION-FILE WORD...
source $argv[1]
or exit 1
set -l line (string join ' ' -- (string escape -- $argv[2..-2]) $argv[-1])
complete -C $line | string replace -r '\t.*' ''
exit 0

# What bash would offer for a command line: bash offer.bash COMPLETION-FILE WORD...
# shellcheck disable=SC1090
source "$1"
shift
COMP_WORDS=("$@")
COMP_CWORD=$(($# - 1))
_zebinfo "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
[ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}"

# What zsh would offer for a command line: zsh -f offer.zsh COMPLETION-FILE WORD...
#
# Only a shell at a terminal completes, so one is started at a pseudo-terminal. It writes what it
# offers into a file, and ends. COMPDUMP names the file that keeps what it finds of its own
# completions, which is most of the work.
zmodload zsh/zpty
scratch=$(mktemp -d) || exit 1
{
  cat >$scratch/setup <<SETUP
PROMPT= RPROMPT=
fpath=(${(q)1:h} \$fpath)
autoload -Uz compinit
compinit -u -d ${(q)COMPDUMP}
bindkey '^I' complete-word
compadd() {
  # What a function of the system asks for itself is no offer.
  if [[ \${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then builtin compadd "\$@"; return; fi
  local -a hits
  builtin compadd -O hits "\$@"
  print -rl -- \$hits >>${(q)scratch}/offered
  builtin compadd "\$@"
}
finish() { print >>${(q)scratch}/finished; exit }
comppostfuncs=(finish)
print ready
SETUP
  zpty shell zsh -f -i
  zpty -w shell "source ${(q)scratch}/setup"
  while zpty -r shell line; do [[ $line == ready* ]] && break; done
  zpty -w -n shell "${(j: :)${(q)@[2,-2]}} ${@[-1]:+${(q)@[-1]}}"$'\t'
  while zpty -r shell line; do :; done
  [[ -e $scratch/finished ]] || { print -u2 "zsh completed nothing"; exit 1 }
  [[ ! -e $scratch/offered ]] || cat $scratch/offered
} always {
  rm -rf $scratch
}

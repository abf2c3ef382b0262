# Completion of zebinfo for bash: commands, options, names of properties and of sections.

# Offers those of the words, one a line, that begin with the word under the cursor.
__zebinfo_offer() {
  local word
  while IFS= read -r word; do
    [[ $word == "$current"* ]] && COMPREPLY+=("$word")
  done <<<"$1"
}

# Offers files, or with -d folders alone.
__zebinfo_offer_paths() {
  local path
  while IFS= read -r path; do COMPREPLY+=("$path"); done < <(compgen "$1" -- "$current")
  compopt -o filenames 2>/dev/null
}

__zebinfo_properties() {
  "$program" --list 2>/dev/null | while read -r _ name; do printf '%s\n' "$name"; done
}

__zebinfo_sections() {
  "$program" keys 2>/dev/null | sed -n 's/^\([^ ].*\) (.*/\1/p' | sort -u
}

# The options of a command, or of zebinfo itself without one.
__zebinfo_options() {
  case $1 in
    '') printf '%s\n' --watch --count --list --version ;;
    interfaces) printf '%s\n' --watch --count --loopback ;;
    time) printf '%s\n' --watch --count ;;
    local-address) printf '%s\n' --ipv4 ;;
    path) printf '%s\n' --base ;;
  esac
  printf '%s\n' --help -h --json --color
}

_zebinfo() {
  local program=${1/#\~/$HOME} current=$2 previous=$3
  local commands=$'interfaces\nlocal-address\nresolve\ntime\nguid\nsoftware-id\nplugin-version
platform-match\npath\nkeys'
  local command='' arguments=0 word i
  for ((i = 1; i < COMP_CWORD; i++)); do
    word=${COMP_WORDS[i]}
    case $word in
      --base | --color | --watch | --count) ((i++)) ;;
      -*) ;;
      *)
        if ((arguments == 0)) && [[ $'\n'$commands$'\n' == *$'\n'"$word"$'\n'* ]]; then
          command=$word
        else
          ((arguments += 1))
        fi
        ;;
    esac
  done

  COMPREPLY=()
  case $previous in
    --base) __zebinfo_offer_paths -d; return ;;
    --color) __zebinfo_offer $'auto\nalways\nnever'; return ;;
    --watch | --count) return ;;
  esac
  if [[ $current == -* ]]; then
    __zebinfo_offer "$(__zebinfo_options "$command")"
    return
  fi
  case $command in
    '')
      __zebinfo_offer "$(__zebinfo_properties)"
      ((arguments > 0)) || __zebinfo_offer "$commands"
      ;;
    plugin-version | path) ((arguments > 0)) || __zebinfo_offer_paths -f ;;
    resolve | local-address)
      ((arguments > 0)) || __zebinfo_offer "$(compgen -A hostname -- "$current")"
      ;;
    keys) ((arguments > 0)) || __zebinfo_offer "$(__zebinfo_sections)" ;;
  esac
}

complete -F _zebinfo zebinfo

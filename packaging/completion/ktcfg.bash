# Completion for ktcfg: its two commands, their options, file names.
_ktcfg() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} at=1
  COMPREPLY=()
  [[ ${COMP_WORDS[1]} =~ ^[0-9]+$ && COMP_CWORD -gt 1 ]] && at=2
  if (( COMP_CWORD == at )); then
    mapfile -t COMPREPLY < <(compgen -W "backup_cfg restore_cfg help -output" -- "$word")
    return
  fi
  case $before in
    -f | --filename | -output | --output)
      compopt -o default
      return
      ;;
    -t | --type)
      mapfile -t COMPREPLY < <(compgen -W "phy" -- "$word")
      return
      ;;
  esac
  [[ $word == -* ]] || return
  case ${COMP_WORDS[at],,} in
    backup_cfg) mapfile -t COMPREPLY < <(compgen -W "--filename --type --help -output" -- "$word") ;;
    restore_cfg) mapfile -t COMPREPLY < <(compgen -W "--filename --type --autoset --raid --help -output" -- "$word") ;;
  esac
}
complete -F _ktcfg ktcfg

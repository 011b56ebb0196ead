# Completion for ktcfg: its commands, and behind them options and their values.
_ktcfg() {
  local at=1 adapter=0
  COMPREPLY=()
  if [[ ${COMP_WORDS[1]} =~ ^[0-9]+$ ]] && (( COMP_CWORD > 1 )); then
    adapter=${COMP_WORDS[1]} at=2
  fi
  if (( COMP_CWORD == at )); then
    mapfile -t COMPREPLY < <(compgen -W "$_ktcfg_words --help --version -output" -- "${COMP_WORDS[COMP_CWORD]}")
  else
    _ktraid_complete ktcfg "$at" "$adapter"
  fi
}
complete -F _ktcfg ktcfg

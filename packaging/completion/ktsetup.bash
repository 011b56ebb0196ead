# Completion for ktsetup: commands of the adapter's set, and behind them options and their values.

# The commands of the set in force on adapter $1, as help lists them; every command when that cannot be asked. Asked once
# a shell for each adapter.
declare -gA _ktsetup_set=()
_ktsetup_commands() {
  local adapter=$1
  if [[ -z ${_ktsetup_set[$adapter]-} ]]; then
    _ktsetup_set[$adapter]=$(
      {
        timeout 2 ktsetup "$adapter" help
        timeout 2 ktsetup "$adapter" help -i
      } 2>/dev/null </dev/null | awk '/^[a-z]+ +:|^[a-z]+ +AES|^[a-z]+ +Force/ { print $1 }'
    )
    : "${_ktsetup_set[$adapter]:=$_ktsetup_words}"
  fi
  REPLY="${_ktsetup_set[$adapter]} ver"
}

_ktsetup() {
  local at=1 adapter=0 REPLY
  COMPREPLY=()
  if [[ ${COMP_WORDS[1]} =~ ^[0-9]+$ ]] && (( COMP_CWORD > 1 )); then
    adapter=${COMP_WORDS[1]} at=2
  fi
  if (( COMP_CWORD == at )); then
    _ktsetup_commands "$adapter"
    mapfile -t COMPREPLY < <(compgen -W "$REPLY -output" -- "${COMP_WORDS[COMP_CWORD]}")
  else
    _ktraid_complete ktsetup "$at" "$adapter"
  fi
}
complete -F _ktsetup ktsetup

# Completion for ktsetup: commands of the adapter's set, option words, objects, file names. The words come from the
# program's tables; behind this, in the built file.

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
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} at=1 adapter=0 command REPLY
  COMPREPLY=()
  if [[ ${COMP_WORDS[1]} =~ ^[0-9]+$ && COMP_CWORD -gt 1 ]]; then
    adapter=${COMP_WORDS[1]} at=2
  fi
  if (( COMP_CWORD == at )); then
    _ktsetup_commands "$adapter"
    mapfile -t COMPREPLY < <(compgen -W "$REPLY -output" -- "$word")
    return
  fi
  command=${COMP_WORDS[at],,}
  case $before in
    -o | --object | --option | --operation)
      # The command word is looked up as it stands: an array index must not be anything but a word.
      if [[ $command =~ ^[a-z]+$ && -n ${_ktsetup_objects[$command]-} ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${_ktsetup_objects[$command]}" -- "$word")
        return
      fi
      ;;
    -f | --file | --filename | -output | --output)
      # Readline completes file names itself, and quotes what needs it.
      compopt -o default
      return
      ;;
  esac
  if [[ $word == -* && $command =~ ^[a-z]+$ ]]; then
    mapfile -t COMPREPLY < <(compgen -W "${_ktsetup_options[$command]-} -output" -- "$word")
  fi
}
complete -F _ktsetup ktsetup

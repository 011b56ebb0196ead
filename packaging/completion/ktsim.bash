# Completion for ktsim: subcommands and options as its own help names them, built-in labs, file names.

# The help of the subcommand that the words $@ name; words that are none leave it at the last one that is.
_ktsim_help() {
  local word path=()
  for word in "$@"; do
    [[ $word =~ ^[a-z]+$ ]] || continue
    ktsim "${path[@]}" "$word" --help >/dev/null 2>&1 </dev/null || break
    path+=("$word")
  done
  ktsim "${path[@]}" --help 2>/dev/null </dev/null
}

_ktsim() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} help i
  COMPREPLY=()
  for (( i = 1; i < COMP_CWORD; i++ )); do
    # Behind "--" stands another command.
    if [[ ${COMP_WORDS[i]} == -- ]]; then
      compopt -o default
      return
    fi
  done
  case $before in
    --lab | -l)
      compopt -o default
      mapfile -t COMPREPLY < <(compgen -W "$(ktsim create --list 2>/dev/null </dev/null)" -- "$word")
      return
      ;;
    --state)
      compopt -o default
      return
      ;;
  esac
  help=$(_ktsim_help "${COMP_WORDS[@]:1:COMP_CWORD-1}")
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(grep -oE -- '--[a-z-]+' <<<"$help")" -- "$word")
  else
    mapfile -t COMPREPLY < <(compgen -W "$(awk '/^Subcommands:/ { on = 1; next } /^[^ ]/ { on = 0 } on { print $1 }' <<<"$help")" -- "$word")
  fi
}
complete -F _ktsim ktsim

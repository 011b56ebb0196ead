# Completion for ktreport: its commands and their options, as its own help names them, and the names of problems. Files
# otherwise.
_ktreport() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command= word
  local commands
  commands=$(timeout 2 ktreport --help 2>/dev/null </dev/null | awk '/^Subcommands:/ { on = 1; next } on { print $1 }')
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    [[ " ${commands//$'\n'/ } " == *" $word "* ]] && command=$word && break
  done
  case $previous in
    --only | --ignore)
      mapfile -t COMPREPLY < <(compgen -W "$(timeout 2 ktreport check --names 2>/dev/null | awk '{ print $1 }')" -- "$current")
      return
      ;;
    --from | --thresholds | --cursor)
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      compopt -o filenames
      return
      ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(timeout 2 ktreport $command --help 2>/dev/null </dev/null |
      grep -oE '(^| |,)--?[a-z][a-z-]*' | tr -d ' ,')" -- "$current")
  elif [[ -z $command ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
    compopt -o filenames
  fi
}
complete -F _ktreport ktreport

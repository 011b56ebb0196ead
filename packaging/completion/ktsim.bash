# Completion for ktsim: subcommands and options as its own help names them, built-in labs, calls, events, and what the
# adapters have: disks, enclosures, cables. File names otherwise.

# The subcommands among the words $@, up to the first that is none; in REPLY, as many words.
_ktsim_path() {
  local word path=()
  for word in "$@"; do
    [[ $word =~ ^[a-z]+$ ]] || continue
    ktsim "${path[@]}" "$word" --help >/dev/null 2>&1 </dev/null || break
    path+=("$word")
  done
  REPLY="${path[*]}"
}

# What ktsim itself says to the words $@, on the state that the line names.
_ktsim_ask() {
  local state=() i
  for (( i = 1; i < COMP_CWORD; i++ )); do
    [[ ${COMP_WORDS[i]} == --state ]] && state=(--state "${COMP_WORDS[i+1]}")
  done
  timeout 2 ktsim "${state[@]}" "$@" 2>/dev/null </dev/null
}

# The adapter that the line names.
_ktsim_adapter() {
  local i
  REPLY=0
  for (( i = 1; i < COMP_CWORD - 1; i++ )); do
    [[ ${COMP_WORDS[i]} == -a || ${COMP_WORDS[i]} == --adapter ]] && REPLY=${COMP_WORDS[i+1]}
  done
  [[ $REPLY =~ ^[0-9]+$ ]] || REPLY=0
}

# The words that fit the next place of the command $1 ($2 = how many words stand in its places already), one a line.
_ktsim_places() {
  local REPLY
  _ktsim_adapter
  case $1 in
    "disk insert") _ktsim_ask status --all -a "$REPLY" | awk '/^  PD .* pulled out$/ { print $2 }' ;;
    "disk replace") (( $2 == 0 )) && _ktsim_ask status --all -a "$REPLY" | awk '/^  PD / { print $2 }' ;;
    "disk pull" | "disk fail")
      _ktsim_ask status --all -a "$REPLY" | awk '/^  PD / && !/ pulled out$/ { print $2 }'
      ;;
    "disk "*) (( $2 == 0 )) && _ktsim_ask status --all -a "$REPLY" | awk '/^  PD / && !/ pulled out$/ { print $2 }' ;;
    "enclosure set" | "enclosure reading")
      (( $2 == 0 )) && _ktsim_ask enclosure show -a "$REPLY" | awk '/^Enclosure / { print $2 }'
      (( $2 == 1 )) && _ktsim_ask enclosure show -a "$REPLY" | awk '/^  / { print $1 }'
      ;;
    "enclosure pull") (( $2 == 0 )) && _ktsim_ask enclosure show -a "$REPLY" | awk '/^Enclosure / { print $2 }' ;;
    "enclosure insert") (( $2 == 0 )) && _ktsim_ask status -a "$REPLY" | awk '/^  Enclosure .*  pulled out$/ { print $2 }' ;;
    "cable pull") (( $2 == 0 )) && _ktsim_ask cable show -a "$REPLY" | awk '!/  pulled out$/ { print $2 }' ;;
    "cable insert") (( $2 == 0 )) && _ktsim_ask cable show -a "$REPLY" | awk '/  pulled out$/ { print $2 }' ;;
    fault) (( $2 == 0 )) && _ktsim_ask fault --list-calls ;;
    event)
      (( $2 == 0 )) && _ktsim_ask event --list | awk '{ print $1 }'
      (( $2 == 1 )) && _ktsim_ask event --list | awk -v class="${COMP_WORDS[COMP_CWORD-1]}" '$1 == class { print $2 }'
      ;;
    "clock until") echo idle ;;
  esac | sort -u
}

# The words between the first braces of $1, one a line; fails without any.
_ktsim_braces() {
  local words
  [[ $1 == *\{*\}* ]] || return
  words=${1#*\{}
  tr , '\n' <<<"${words%%\}*}"
}

# Those that option $2 takes by the help $1, and those that its place number $2 takes.
_ktsim_choices() {
  _ktsim_braces "$(grep -E -m1 -- "^ *(-[a-z],)?$2[, ][^{]*[{]" <<<"$1")"
}
_ktsim_place_choices() {
  _ktsim_braces "$(awk -v n="$2" '/^Positionals:/ { on = 1; next } /^[^ ]/ { on = 0 } on && /^  [A-Z]/ && n-- == 0' <<<"$1")"
}

_ktsim() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} help path i REPLY places choices
  COMPREPLY=()
  for (( i = 1; i < COMP_CWORD; i++ )); do
    # Behind "--" stands another command.
    if [[ ${COMP_WORDS[i]} == -- ]]; then
      (( i == COMP_CWORD - 1 )) && [[ ${COMP_WORDS[1]} == rehearse ]] && COMPREPLY=($(compgen -W "ktsetup ktcfg" -- "$word"))
      compopt -o default
      return
    fi
  done
  case $before in
    --lab | -l | --from)
      compopt -o default
      [[ $before == --from && ${COMP_WORDS[1]} == rehearse ]] && return
      mapfile -t COMPREPLY < <(compgen -W "$(ktsim create --list 2>/dev/null </dev/null)" -- "$word")
      return
      ;;
    --state | --script | --keep)
      compopt -o default
      return
      ;;
    --until)
      mapfile -t COMPREPLY < <(compgen -W idle -- "$word")
      return
      ;;
  esac
  _ktsim_path "${COMP_WORDS[@]:1:COMP_CWORD-1}"
  path=$REPLY
  # The path is made of words that are only letters.
  help=$(ktsim $path --help 2>/dev/null </dev/null)
  if [[ $before == -* ]] && choices=$(_ktsim_choices "$help" "$before"); then
    local IFS=$'\n'
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "${word//\\ / }")
    # A word with a blank is one word.
    COMPREPLY=("${COMPREPLY[@]// /\\ }")
    return
  fi
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(grep -oE -- '--[a-z-]+' <<<"$help")" -- "$word")
    return
  fi
  places=0
  for (( i = 1; i < COMP_CWORD; i++ )); do
    [[ ${COMP_WORDS[i]} == -* ]] || (( ++places ))
    # What stands behind these is theirs.
    [[ ${COMP_WORDS[i]} =~ ^(-a|--adapter|--state)$ ]] && (( --places ))
  done
  set -- $path
  places=$(( places - $# ))
  choices=$(_ktsim_places "$path" "$places")
  [[ -n $choices ]] || choices=$(_ktsim_place_choices "$help" "$places")
  mapfile -t COMPREPLY < <(compgen -W "$(awk '/^Subcommands:/ { on = 1; next } /^[^ ]/ { on = 0 } on { print $1 }' <<<"$help")
    $choices" -- "$word")
  [[ $path == "image make" || $path == "image microcode" ]] && compopt -o default
}
complete -F _ktsim ktsim

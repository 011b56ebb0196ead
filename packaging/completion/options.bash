# What the completion of ktsetup and of ktcfg has in common: options and their values, as the programs' tables say it
# (behind this, in the built file).

# The ids of a kind of thing on adapter $2, each with a tab and its name. Only listings are asked for; nothing is
# answered when the adapter does not.
_ktraid_ids() {
  local listing="" id="" name=""
  case $1 in
    adapter) listing='info -o hba' id='Adapter ID:' name='Product:' ;;
    disk | disks) listing='info -o pd' id='PD ID:' name='model:' ;;
    vd) listing='info -o vd' id='id:' name='name:' ;;
    array) listing='info -o array' id='ID:' name='Name:' ;;
    enclosure) listing='enc -o enc' id='Enclosure ID:' name='Product ID:' ;;
    *) return ;;
  esac
  # shellcheck disable=SC2086
  timeout 5 ktsetup "$2" $listing 2>/dev/null </dev/null | awk -v id="$id" -v name="$name" '
    function rest(label) { sub("^" label " *", ""); sub(" *$", ""); return $0 }
    function flush() { if (found != "") print found "\t" label; found = label = "" }
    index($0, id) == 1 { flush(); found = rest(id); next }
    index($0, name) == 1 && label == "" { label = rest(name) }
    END { flush() }'
}

# The kind of thing that the word of -o names, on a command line whose words are the arguments.
_ktraid_object() {
  local previous="" word
  for word in "$@"; do
    [[ $word == = ]] && continue
    if [[ $previous == -o || $previous == --object ]]; then
      case ${word,,} in
        vd | ld | tandem) REPLY=vd ;;
        pd | hd | spare) REPLY=disk ;;
        array) REPLY=array ;;
        hba) REPLY=adapter ;;
        enc) REPLY=enclosure ;;
      esac
    fi
    previous=$word
  done
}

# Offers what begins with $3: the words of $1, or the ids of the kind that it names on adapter $2.
_ktraid_offer() {
  local kinds=$1 adapter=$2 word=$3 kept="" listed kind id name
  local -a ids=() shown=()
  for kind in $kinds; do
    case $kind in
      @file)
        # Readline completes file names itself, and quotes what needs it.
        compopt -o default
        return
        ;;
      @none) ;;
      @*)
        if [[ $kind == @disks ]]; then
          [[ $word == *,* ]] && kept=${word%,*},
          compopt -o nospace
        fi
        listed=,$kept
        while IFS=$'\t' read -r id name; do
          [[ $id == "${word#"$kept"}"* && $listed != *",$id,"* ]] || continue
          ids+=("$kept$id")
          shown+=("$id${name:+ ($name)}")
        done < <(_ktraid_ids "${kind#@}" "$adapter")
        ;;
      *) [[ ${kind,,} == "${word,,}"* ]] && ids+=("$kind") shown+=("$kind") ;;
    esac
  done
  # What is shown beside an id must not be typed for the user.
  if (( ${#ids[@]} > 1 )) && [[ -z $kept ]]; then
    COMPREPLY=("${shown[@]}")
  else
    COMPREPLY=("${ids[@]}")
  fi
}

# Completes behind the command word of program $1, which stands at index $2; adapter $3.
_ktraid_complete() {
  local -n options=_$1_options values=_$1_values
  local at=$2 adapter=$3 word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} command value REPLY=""
  command=${COMP_WORDS[at],,}
  # The command word is looked up as it stands: an array index must not be anything but a word.
  [[ $command =~ ^[a-z_]+$ ]] || return
  # An equals sign is a word of its own.
  if [[ $word == = ]]; then
    word=
  elif [[ $before == = ]]; then
    before=${COMP_WORDS[COMP_CWORD-2]}
  fi
  if [[ $before == -output ]]; then
    compopt -o default
    return
  fi
  if [[ $before =~ ^--?[A-Za-z]+$ && -n ${values["$command $before"]-} ]]; then
    value=${values["$command $before"]}
    if [[ $value == *@object* ]]; then
      _ktraid_object "${COMP_WORDS[@]:at+1}"
      value=${REPLY:+@$REPLY}
    fi
    _ktraid_offer "$value" "$adapter" "$word"
  elif [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "${options[$command]-} -output" -- "$word")
  elif [[ $command == help ]]; then
    local -n words=_$1_words
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  fi
}


# Completion of the command drevin in bash. The command itself knows what may stand where: it is asked
# with the words that were typed, and answers with words, or with the files that fit.

# Files of the extensions in the arguments behind the typed word (an empty one: all files), and folders.
_drevin_files() {
  local typed=$1 path extension
  shift
  while IFS= read -r path; do
    if [[ -d $path ]]; then
      COMPREPLY+=("$path")
      continue
    fi
    for extension in "$@"; do
      [[ ${path,,} == *"$extension" ]] && COMPREPLY+=("$path") && break
    done
  done < <(compgen -f -- "$typed")
}

_drevin() {
  local line=${COMP_LINE:0:COMP_POINT} typed cut='' answer word
  local -a words answers
  # Not COMP_WORDS: bash cuts those at every '='. Backslashes before blanks are taken away.
  # shellcheck disable=SC2162
  read -a words <<<"$line"
  [[ $line == *[![:space:]] ]] || words+=('')
  typed=${words[-1]}
  COMPREPLY=()
  mapfile -t answers < <("${words[0]}" complete "${words[@]:1}" 2>/dev/null)
  # What stands before the last '=' is not part of the word that bash replaces.
  [[ $typed == *=* && $COMP_WORDBREAKS == *=* ]] && cut=${typed%=*}=
  for answer in "${answers[@]}"; do
    case $answer in
      +files*)
        read -ra words <<<"${answer#+files}"
        _drevin_files "${typed#--*=}" "${words[@]:-}"
        compopt -o filenames 2>/dev/null
        ;;
      +folders)
        while IFS= read -r word; do
          [[ " ${COMPREPLY[*]} " == *" $word "* ]] || COMPREPLY+=("$word")
        done < <(compgen -d -- "${typed#--*=}")
        compopt -o filenames 2>/dev/null
        ;;
      +open) compopt -o nospace 2>/dev/null ;;
      *)
        word=${answer#"$cut"}
        [[ $word == *[!A-Za-z0-9_./=,:@+-]* ]] && printf -v word '%q' "$word"
        COMPREPLY+=("$word")
        ;;
    esac
  done
}

complete -F _drevin drevin

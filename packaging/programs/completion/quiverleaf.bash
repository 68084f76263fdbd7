# SPDX-License-Identifier: Apache-2.0
# Completion of the quiverleaf command for bash.
_quiverleaf() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' i
  local commands='metadata pdf ping status stop webarchive rtfd html2rtfd image topdf poster sheet text strip tags page links feed entities charset decode url date location fork type copy paste help version'
  local options='--help --version'
  for ((i = 1; i < COMP_CWORD; i++)); do
    if [[ " $commands " == *" ${COMP_WORDS[i]} "* ]]; then
      command=${COMP_WORDS[i]}
      break
    fi
  done
  [[ $command =~ ^(status|stop|strip|tags|page|links|feed|entities|charset|decode|url|date|location|fork|type|help|version)$ ]] || options+=' --no-start --wait'
  [[ $command =~ ^(status|charset|url|date|fork|help|version)$ ]] || options+=' --timeout'
  [[ $command =~ ^(stop|rtfd|html2rtfd|topdf|sheet|text|strip|entities|copy|help|version)$ ]] || options+=' --pretty --plist'
  [[ $command == metadata ]] && options+=' --no-text --text-only --file-facts'
  [[ $command == pdf ]] && options+=' --attributed --output --pages --password --password-file --text'
  [[ $command == webarchive ]] && options+=' --create --output'
  [[ $command == rtfd ]] && options+=' --output'
  [[ $command == html2rtfd ]] && options+=' --base --remote --output'
  [[ $command == image ]] && options+=' --text --spotlight --output --size'
  [[ $command == topdf ]] && options+=' --output'
  [[ $command == poster ]] && options+=' --cover --output --size'
  [[ $command == sheet ]] && options+=' --output --size'
  [[ $command == text ]] && options+=' --reformat --simple --body --no-junk --google-tags --plain-ascii'
  [[ $command == entities ]] && options+=' --encode --no-standard --numeric --non-umlauted'
  [[ $command == decode ]] && options+=' --encoding --default --json'
  [[ $command == strip ]] && options+=' --tag --attributes --bodies --except --objects'
  [[ $command == links ]] && options+=' --containing --nofollow --filtered --details'
  [[ $command == feed ]] && options+=' --url --html --linked-style --as-given --json-feed --opml'
  [[ $command == url ]] && options+=' --base --markup'
  [[ $command == date ]] && options+=' --http'
  [[ $command == fork ]] && options+=' --extract --output'
  [[ $command == location ]] && options+=' --create --output'
  [[ $command == copy ]] && options+=' --file --url --title --rtf --image --html'
  [[ $command == paste ]] && options+=' --as --output --types'
  if [[ $previous =~ ^--(timeout|wait|encoding|default|tag|attributes|bodies|except|base|containing|extract|size|url|title|pages|password)$ ]]; then
    COMPREPLY=()
  elif [[ $previous == --encode ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'standard high table' -- "$word")
  elif [[ $previous == --as ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'text html rtfd png' -- "$word")
  elif [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  elif [[ $previous =~ ^(-o|--output|--password-file)$ || ($command == copy && $previous =~ ^--(file|rtf|image|html)$) ]]; then
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  elif [[ -z $command || $command == help ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$word")
  elif [[ $command =~ ^(metadata|pdf|webarchive|rtfd|html2rtfd|image|topdf|poster|sheet|text|strip|tags|page|links|feed|decode|location|fork|type)$ ]]; then
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -F _quiverleaf quiverleaf

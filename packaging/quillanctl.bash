# bash completion for quillanctl
# shellcheck shell=bash

_quillanctl() {
  local cur prev
  cur=${COMP_WORDS[COMP_CWORD]}
  prev=${COMP_WORDS[COMP_CWORD - 1]}
  local writing="--dry-run --yes --format --help"
  local words=""
  case $prev in
    --format)
      mapfile -t COMPREPLY < <(compgen -W "table csv json" -- "$cur")
      return
      ;;
    import | diff)
      mapfile -t COMPREPLY < <(compgen -f -- "$cur")
      compopt -o filenames
      return
      ;;
  esac
  if ((COMP_CWORD == 1)); then
    words="status ports groups sources port --help --help-all --version"
  elif ((COMP_CWORD == 2)); then
    case ${COMP_WORDS[1]} in
      status) words="--format --help" ;;
      ports) words="list add enable disable delete rename import export diff --help" ;;
      groups) words="list add enable disable delete rename import export diff which --help" ;;
      sources) words="list enable disable --help" ;;
      port) words="get set --help" ;;
    esac
  else
    case ${COMP_WORDS[1]}:${COMP_WORDS[2]} in
      *:list) words="--filter --format --help" ;;
      *:import) words="--replace --skip-refused $writing" ;;
      *:diff | *:which) words="--format --help" ;;
      sources:enable | sources:disable) words="--node --all --skip-refused $writing" ;;
      *:enable | *:disable | *:delete) words="--skip-refused $writing" ;;
      *:add | *:rename | *:set) words=$writing ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
}

complete -F _quillanctl quillanctl

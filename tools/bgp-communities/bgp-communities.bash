# Completion for bash: commands, options, their values, and files.
_bgp_communities() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  # The command; of a store, with what is done to it.
  local command='' i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case $command:${COMP_WORDS[i]} in
      :mrt | :show | :attribute | :store) command=${COMP_WORDS[i]} ;;
      store:write | store:read | store:info | store:remove) command=store-${COMP_WORDS[i]} ;;
    esac
  done

  local words='' files=''
  case $command:$before in
    mrt:--kind) words='standard large extended ipv6' ;;
    mrt:--match | mrt:--prefix | mrt:--peer | mrt:--top) return ;;
    store-write:--churn | store-write:--size) return ;;
    mrt:*)
      words='--routes --json --summary --top --kind --match --prefix --peer --verify --no-progress
        --help'
      files=1
      ;;
    show:*)
      words='--asdot --weighted --json --help internet graceful-shutdown llgr-stale no-llgr
        blackhole no-export no-advertise no-export-subconfed nopeer'
      ;;
    attribute:*) words='--json --help' ;;
    store:*) words='write read info remove --help' ;;
    store-write:*) words='--churn --size --help' files=1 ;;
    store-read:*) words='--lists --follow --help' files=1 ;;
    store-*) words='--help' files=1 ;;
    *) words='mrt show attribute store --help --version' ;;
  esac

  COMPREPLY=()
  local line
  if [[ $word == -* || -z $files ]]; then
    while IFS= read -r line; do COMPREPLY+=("$line"); done < <(compgen -W "$words" -- "$word")
  else
    compopt -o filenames 2>/dev/null
    while IFS= read -r line; do COMPREPLY+=("$line"); done < <(compgen -f -- "$word")
  fi
}
complete -F _bgp_communities bgp-communities

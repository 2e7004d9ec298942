# Completion of orvane for bash.
_orvane() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W 'portrait detect check watch report info help version --help --version' -- "$current")
        return
    fi
    case $before in
        --actions)
            mapfile -t COMPREPLY < <(compgen -W 'crop crop,background crop,colour crop,background,colour none' -- "$current")
            return
            ;;
        --steps)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            return
            ;;
        --size | --crop-ratio | --tolerance | --rotate | --output-name | --face | --document | --shard | --jobs | --timeout | --memory) return ;;
    esac
    if [[ $current == -* ]]; then
        local options=--json
        local many='-r --recursive --files-from --shard --jobs --timeout --memory --report --json --quiet'
        case $command in
            portrait)
                options='-o --output --output-name --size --crop-ratio --actions --tolerance --rotate --steps --resume'
                options+=' --face --corrections --sheet'
                options+=" --force $many"
                ;;
            detect) options="--all $many" ;;
            check) options="--document --face --corrections $many" ;;
            watch)
                options='-o --output --output-name --size --crop-ratio --actions --tolerance --rotate --force'
                options+=' --shard --jobs --timeout --memory --report --json --quiet'
                ;;
            report) options='-o --output --force' ;;
            info) ;;
            *) options= ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    if [ "$command" = report ] && [ "$COMP_CWORD" -eq 2 ]; then
        COMPREPLY=(join)
        return
    fi
    case $command in
        watch)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$current")
            ;;
        portrait | detect | check | report)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
    esac
}
complete -F _orvane orvane

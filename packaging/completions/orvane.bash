# Completion of orvane for bash.
_orvane() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W 'portrait detect watch documents report info help version --help --version' -- "$current")
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
        --document)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -W "$(orvane documents 2>/dev/null | cut -d' ' -f1)" -- "$current"
                compgen -f -X '!*.toml' -- "$current")
            return
            ;;
        --fill)
            mapfile -t COMPREPLY < <(compgen -W 'edge white' -- "$current")
            return
            ;;
        --size | --dpi | --head | --crop-ratio | --tolerance | --rotate | --output-name | --shard | --jobs | --timeout | --memory) return ;;
    esac
    if [[ $current == -* ]]; then
        local options=--json
        local frame='--document --dpi --head --fill --allow-edits'
        local many='-r --recursive --files-from --shard --jobs --timeout --memory --report --json --quiet'
        case $command in
            portrait)
                options='-o --output --output-name --size --crop-ratio --actions --tolerance --rotate --steps --resume'
                options+=" --force $frame $many"
                ;;
            detect) options=$many ;;
            watch)
                options='-o --output --output-name --size --crop-ratio --actions --tolerance --rotate --force'
                options+=" $frame --shard --jobs --timeout --memory --report --json --quiet"
                ;;
            report) options='-o --output --force' ;;
            info | documents) ;;
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
        documents)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -X '!*.toml' -- "$current")
            ;;
        portrait | detect | report)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
    esac
}
complete -F _orvane orvane

# Completion of orvane for bash.
_orvane() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W 'portrait detect check watch documents print report info help version --help --version' -- "$current")
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
        --size | --head | --face | --crop-ratio | --tolerance | --rotate | --output-name | --shard | --jobs | --timeout | --memory) return ;;
        --quality | --dpi | --max-kb | --min-kb | --copies | --gap | --margin) return ;;
        --chroma)
            mapfile -t COMPREPLY < <(compgen -W '444 422 420' -- "$current")
            return
            ;;
        --paper)
            mapfile -t COMPREPLY < <(compgen -W '10x15cm 102x152mm 13x18cm A4 A5 A6 letter' -- "$current")
            return
            ;;
    esac
    if [[ $current == -* ]]; then
        local options=--json
        local frame='--document --head --fill --allow-edits'
        local file='--quality --chroma --dpi --max-kb --min-kb --keep-metadata'
        local many='-r --recursive --files-from --shard --jobs --timeout --memory --report --json --quiet --force'
        case $command in
            portrait)
                options='-o --output --output-name --size --crop-ratio --actions --tolerance --rotate --steps --resume'
                options+=' --face --corrections --sheet'
                options+=" $frame $file $many"
                ;;
            detect) options="--all $many" ;;
            check) options="--document --face --corrections $many" ;;
            watch)
                options='-o --output --output-name --size --crop-ratio --actions --tolerance --rotate --force'
                options+=" $frame $file --shard --jobs --timeout --memory --report --json --quiet"
                ;;
            print) options='-o --output --paper --copies --gap --margin --cut-marks --size --dpi --force' ;;
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
        portrait | detect | check | print | report)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
    esac
}
complete -F _orvane orvane

# Completion of orvane for bash.
_orvane() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W 'portrait detect info help version --help --version' -- "$current")
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
        --size | --crop-ratio | --tolerance | --rotate) return ;;
    esac
    if [[ $current == -* ]]; then
        local options=--json
        case $command in
            portrait)
                options='-o --output --size --crop-ratio --actions --tolerance --rotate --steps --force --json'
                ;;
            detect | info) ;;
            *) options= ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    case $command in
        portrait | detect)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
    esac
}
complete -F _orvane orvane

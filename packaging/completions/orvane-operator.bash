# Completion of orvane-operator for bash.
_orvane_operator() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W 'review live devices help --help' -- "$current")
        return
    fi
    case $before in
        --actions)
            mapfile -t COMPREPLY < <(compgen -W 'crop crop,background,colour,rotation none' -- "$current")
            return
            ;;
        --language)
            mapfile -t COMPREPLY < <(compgen -W 'french.txt german.txt portuguese.txt spanish.txt turkish.txt' -- "$current")
            return
            ;;
        --size | --crop-ratio | --device) return ;;
    esac
    if [[ $current == -* ]]; then
        local options=
        case $command in
            review) options='-o --output --actions --size --crop-ratio --language --hidden --force' ;;
            live) options='-o --output --device --actions --size --crop-ratio --language --force' ;;
            devices) options=--json ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
        return
    fi
    case $command in
        review | live)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
    esac
}
complete -F _orvane_operator orvane-operator

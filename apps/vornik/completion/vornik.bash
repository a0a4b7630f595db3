# Completion of vornik's command line for bash: commands, options, values and file names.

# Names of files that match a pattern, and of folders.
_vornik_files()
{
    local name
    COMPREPLY=()
    while IFS= read -r name; do
        [[ -d $name || ${name,,} == $1 ]] && COMPREPLY+=("$name")
    done < <(compgen -f -- "$word")
    compopt -o filenames 2> /dev/null
}

_vornik_words()
{
    COMPREPLY=($(compgen -W "$1" -- "$word"))
}

# What may follow an option. Fails after one that takes no value.
_vornik_value()
{
    case $1 in
        --textures | --root | --prefix | --into) _vornik_files "" ;;
        -o | --output)
            if [ "$command" = render ]; then _vornik_files "*.@(png|jpg|jpeg|apng)"; else _vornik_files "*.lights"; fi ;;
        --pack) _vornik_files "*.pak" ;;
        --lights) _vornik_files "*.lights" ;;
        --background) _vornik_words "black white grey red green blue sky" ;;
        --transparent) _vornik_words "sorted immediate" ;;
        --up) _vornik_words "x y z" ;;
        --rasterizer) _vornik_words "0 1" ;;
        --size) _vornik_words "640x480 1280x720 1920x1080" ;;
        --samples | --camera | --turn | --tilt | --frame | --frames | --every | --fps | --ambient) COMPREPLY=() ;;
        *) return 1 ;;
    esac
    return 0
}

_vornik()
{
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
    local read="--pack --textures --classic"
    local light="--shadows --ambient --smooth --no-smooth"
    local draw="--size --background --wire --flat --no-textures --two-sided --transparent --cull --lights --partial
        --camera --up --turn --tilt"
    local options="-h --help"

    if [ "$COMP_CWORD" -eq 1 ]; then
        _vornik_words "render view info bake console pack $options --version"
        return
    fi
    if [ "$command" = pack ]; then
        if [ "$COMP_CWORD" -eq 2 ]; then
            _vornik_words "create list extract verify $options"
            return
        fi
        command="pack ${COMP_WORDS[2]}"
    fi
    _vornik_value "$previous" && return

    case $command in
        render) options+=" -o --output --samples --rasterizer --frame --frames --every --fps --quiet
            $read $light $draw" ;;
        view) options+=" $read $light $draw" ;;
        info) options+=" --json --octree $read" ;;
        bake) options+=" -o --output --quiet $read $light" ;;
        console) options+=" --size" ;;
        "pack create") options+=" --root --prefix" ;;
        "pack extract") options+=" --into --force" ;;
    esac
    if [[ $word == -* ]]; then
        _vornik_words "$options"
        return
    fi
    case $command in
        render | view | info | bake) _vornik_files "*.3ds" ;;
        "pack create") _vornik_files "*" ;;
        pack*) if [ "$COMP_CWORD" -eq 3 ]; then _vornik_files "*.pak"; else COMPREPLY=(); fi ;;
        console) _vornik_files "*" ;;
    esac
}

complete -F _vornik vornik

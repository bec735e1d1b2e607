# Bash completion of qtrace                                                             -*- shell-script -*-
# The tables at the end are written by the program itself; what they hold is told in host/settings/completion.h.

# What a typed word means, without its quotes. Nothing in it is executed.
_qtrace_unquoted()
{
    local plain=${1//[\'\"\\]/}
    printf '%s' "${plain/#\~\//$HOME/}"
}

# The tracks of the device folder that the settings on the command line lead to. Within quotes readline quotes what is
# missing; elsewhere it would leave a dollar sign as it is.
_qtrace_tracks()
{
    local name typed
    typed=$(_qtrace_unquoted "$cur")
    [[ $cur == [\'\"]* ]] && compopt -o filenames
    while IFS= read -r name; do
        [[ ${name//[\'\"\\]/} == "$typed"* ]] || continue
        [[ $cur == [\'\"]* ]] || printf -v name %q "$name"
        COMPREPLY+=("$name")
    done < <(command "$program" print-track-names "${settings[@]}" 2>/dev/null)
}

# $1: what belongs here, as the tables name it.
_qtrace_propose()
{
    local kind
    for kind in $1; do
        case $kind in
            @file) _filedir ;;
            @dir) _filedir -d ;;
            @track) _qtrace_tracks ;;
            @command) COMPREPLY+=($(compgen -W "${_qtrace_commands[qtrace]}" -- "$cur")) ;;
            @text) ;;
            *) COMPREPLY+=($(compgen -W "$kind" -- "$cur")) ;;
        esac
    done
}

# Walks over the words before the cursor: finds the command, the place of the argument and the settings, and in
# `waiting` what the last option takes if the word at the cursor is its value.
_qtrace_walk()
{
    local word option takes i
    for ((i = 1; i < cword; i++)); do
        word=${words[i]} option=${words[i]%%=*}
        if [[ $word == -- && $dashes ]]; then
            dashes=
        elif [[ $word == -?* && $dashes ]]; then
            takes=${_qtrace_values[$command $option]-${_qtrace_values[qtrace $option]-}}
            [[ $word == *=* || (${words[i + 1]} == -?* && i+1 -lt cword) ]] && takes=
            if [[ " ${_qtrace_options[qtrace]#--help --version } " == *" $option "* ]]; then
                settings+=("$(_qtrace_unquoted "$word")")
                [[ $takes ]] && settings+=("$(_qtrace_unquoted "${words[i + 1]}")")
            fi
            [[ $takes ]] && ((++i == cword)) && waiting=$takes
        elif [[ $place -eq 1 && " ${_qtrace_commands[$command]-} " == *" $word "* ]]; then
            command+=" $word"
        else
            ((place++))
        fi
    done
}

_qtrace()
{
    local cur prev words cword split
    _init_completion -s -n : || return
    local program command=qtrace place=1 dashes=yes waiting= settings=()
    program=$(_qtrace_unquoted "$1")
    _qtrace_walk
    if [[ $split == true ]]; then
        _qtrace_propose "${_qtrace_values[$command $prev]-${_qtrace_values[qtrace $prev]-@text}}"
    elif [[ $waiting && ! ($waiting == @text && $cur == -*) ]]; then
        _qtrace_propose "$waiting"
    elif [[ $cur == -* && $dashes ]]; then
        COMPREPLY=($(compgen -W "${_qtrace_options[$command]-} ${_qtrace_options[qtrace]}" -- "$cur"))
    elif [[ $place -eq 1 && ${_qtrace_commands[$command]-} ]]; then
        COMPREPLY=($(compgen -W "${_qtrace_commands[$command]}" -- "$cur"))
    else
        _qtrace_propose "${_qtrace_values[$command $place]-${_qtrace_values[$command ...]-@text}}"
    fi
    __ltrim_colon_completions "$cur"
}

complete -F _qtrace qtrace


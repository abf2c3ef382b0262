# Completion of zebinfo for fish: commands, options, names of properties and of sections.

set -l commands interfaces local-address resolve time guid software-id plugin-version \
    platform-match path keys

# How many words that are no options, nor the value of one, stand before the cursor.
function __zebinfo_words
    set -l count 0
    set -l is_value no
    for word in (commandline -opc)[2..-1]
        if test $is_value = yes
            set is_value no
        else if contains -- $word --base --color --watch --count
            set is_value yes
        else if not string match -q -- '-*' $word
            set count (math $count + 1)
        end
    end
    echo $count
end

function __zebinfo_properties
    set -l words (commandline -opc)
    $words[1] --list 2>/dev/null | string replace -r '^(\S+)\s+(\S+)$' '$2'\t'$1'
end

function __zebinfo_sections
    set -l words (commandline -opc)
    $words[1] keys 2>/dev/null | string replace -rf '^(\S.*) \(.*' '$1' | sort -u
end

complete -c zebinfo -f
complete -c zebinfo -s h -l help -d 'Show the usage'
complete -c zebinfo -l json -d 'Print JSON'
complete -c zebinfo -l color -x -a 'auto always never' -d 'Print colours'

set -l no_command "not __fish_seen_subcommand_from $commands"
set -l watched "$no_command; or __fish_seen_subcommand_from interfaces time"
complete -c zebinfo -n $watched -l watch -x -d 'Show it again every so many seconds'
complete -c zebinfo -n $watched -l count -x -d 'How often --watch shows it'
complete -c zebinfo -n $no_command -l version -d 'Show the version'
complete -c zebinfo -n $no_command -l list -d 'List the names of the properties with their groups'
complete -c zebinfo -n $no_command -a '(__zebinfo_properties)'

set -l first 'test (__zebinfo_words) -eq 0'
complete -c zebinfo -n $first -a interfaces -d 'Show the interfaces of this host'
complete -c zebinfo -n $first -a local-address -d 'Show the local address that faces a peer'
complete -c zebinfo -n $first -a resolve -d 'Show the addresses of a host'
complete -c zebinfo -n $first -a time -d 'Show the time, the zone and the uptime'
complete -c zebinfo -n $first -a guid -d 'Make a new GUID'
complete -c zebinfo -n $first -a software-id -d "Show the agent's software identifier"
complete -c zebinfo -n $first -a plugin-version -d "Show a plug-in's version stamps"
complete -c zebinfo -n $first -a platform-match -d 'Tell whether a list supports a platform'
complete -c zebinfo -n $first -a path -d 'Show the flat form of a path and its file'
complete -c zebinfo -n $first -a keys -d "Show the configuration's sections and keys"

set -l argument 'test (__zebinfo_words) -eq 1; and __fish_seen_subcommand_from'
complete -c zebinfo -n '__fish_seen_subcommand_from interfaces' -l loopback \
    -d 'Show loopback interfaces too'
complete -c zebinfo -n '__fish_seen_subcommand_from local-address' -l ipv4 \
    -d 'Try only IPv4 addresses'
complete -c zebinfo -n "$argument local-address resolve" -a '(__fish_print_hostnames)'
complete -c zebinfo -n "$argument plugin-version path" -F
complete -c zebinfo -n '__fish_seen_subcommand_from path' -l base -x \
    -a '(__fish_complete_directories)' -d 'Take a relative path against this directory'
complete -c zebinfo -n "$argument keys" -a '(__zebinfo_sections)'

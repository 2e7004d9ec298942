# Completion of orvane for fish.
complete -c orvane -f
complete -c orvane -n __fish_use_subcommand -a portrait -d 'Make a portrait of each photo'
complete -c orvane -n __fish_use_subcommand -a detect -d 'Look for the face in each photo'
complete -c orvane -n __fish_use_subcommand -a info -d 'Tell version, library, classifier and processor'
complete -c orvane -n __fish_use_subcommand -a help -d 'Print a summary'
complete -c orvane -n __fish_use_subcommand -a version -d 'Print the version'
complete -c orvane -n '__fish_seen_subcommand_from portrait detect' -F
complete -c orvane -n '__fish_seen_subcommand_from portrait detect info' -l json -d 'Results as JSON'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -s o -l output -r -F -d 'Where the portraits go'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -l size -x -d 'Pixels of the portrait'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -l crop-ratio -x -d 'How much is left around the face'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -l actions -x -a 'crop crop,background crop,colour none' -d 'What is done'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -l tolerance -x -d 'What counts as background'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -l rotate -x -d 'Turn the portrait clockwise'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -l steps -x -a '(__fish_complete_directories)' -d 'Write the picture after each action'
complete -c orvane -n '__fish_seen_subcommand_from portrait' -l force -d 'Replace existing files'

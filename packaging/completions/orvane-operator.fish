# Completion of orvane-operator for fish.
complete -c orvane-operator -f
complete -c orvane-operator -n __fish_use_subcommand -a review -d 'Review the portrait of a photograph'
complete -c orvane-operator -n __fish_use_subcommand -a live -d 'Take a portrait from a camera'
complete -c orvane-operator -n __fish_use_subcommand -a devices -d 'List the cameras'
complete -c orvane-operator -n __fish_use_subcommand -a help -d 'Print a summary'
complete -c orvane-operator -n '__fish_seen_subcommand_from devices' -l json -d 'One object a camera'
complete -c orvane-operator -n '__fish_seen_subcommand_from review' -F
complete -c orvane-operator -n '__fish_seen_subcommand_from review' -l hidden -d 'No window as long as a face is found'
complete -c orvane-operator -n '__fish_seen_subcommand_from live' -l device -x -d 'Number of the camera'
complete -c orvane-operator -n '__fish_seen_subcommand_from review live' -s o -l output -r -F -d 'The portrait'
complete -c orvane-operator -n '__fish_seen_subcommand_from review live' -l actions -x -a 'crop crop,background,colour,rotation none' -d 'What is done'
complete -c orvane-operator -n '__fish_seen_subcommand_from review live' -l size -x -d 'Pixels of the portrait'
complete -c orvane-operator -n '__fish_seen_subcommand_from review live' -l crop-ratio -x -d 'How much is left around the face'
complete -c orvane-operator -n '__fish_seen_subcommand_from review live' -l language -x -a 'french.txt german.txt portuguese.txt spanish.txt turkish.txt' -d 'Texts of the window'
complete -c orvane-operator -n '__fish_seen_subcommand_from review live' -l force -d 'Replace an existing output'

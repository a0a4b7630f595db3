# Completion of vornik's command line for fish: commands, options, values and file names.

function __vornik_command # what is typed so far, as "render" or "pack create"
    set -l words (commandline -opc)
    set -e words[1]
    if test "$words[1]" = pack
        echo pack $words[2]
    else
        echo $words[1]
    end
end

function __vornik_is
    contains -- (__vornik_command) $argv
end

complete -c vornik -f
complete -c vornik -s h -l help -d 'Print help'
complete -c vornik -n '__vornik_is ""' -l version -d 'Print the version'
complete -c vornik -n '__vornik_is ""' -a 'render view info bake console pack'
complete -c vornik -n '__vornik_is pack' -a 'create list extract verify'

set -l scene render view info bake
complete -c vornik -n "__vornik_is $scene" -k -a '(__fish_complete_suffix .3ds)'
complete -c vornik -n "__vornik_is $scene" -l pack -rka '(__fish_complete_suffix .pak)' -d 'Pack file of scene and images'
complete -c vornik -n "__vornik_is $scene" -l textures -xa '(__fish_complete_directories)' -d 'Folder of the images'
complete -c vornik -n "__vornik_is $scene" -l classic -d 'Read the file strictly'

set -l lit render view bake
complete -c vornik -n "__vornik_is $lit" -l shadows -d 'Trace shadows'
complete -c vornik -n "__vornik_is $lit" -l ambient -x -d 'Light everywhere, 0 to 1'
complete -c vornik -n "__vornik_is $lit" -l smooth -d 'Split vertices along smoothing groups'
complete -c vornik -n "__vornik_is $lit" -l no-smooth -d 'Keep vertices as they are'

set -l drawn render view
complete -c vornik -n "__vornik_is $drawn" -l background -xa 'black white grey red green blue sky' -d 'Colour behind'
complete -c vornik -n "__vornik_is $drawn" -l wire -d 'Draw edges only'
complete -c vornik -n "__vornik_is $drawn" -l flat -d 'Shade each face flat'
complete -c vornik -n "__vornik_is $drawn" -l no-textures -d 'Draw light only'
complete -c vornik -n "__vornik_is $drawn" -l two-sided -d 'Draw faces from behind, too'
complete -c vornik -n "__vornik_is $drawn" -l transparent -xa 'sorted immediate' -d 'Order of transparent faces'
complete -c vornik -n "__vornik_is $drawn" -l cull -d 'Skip meshes outside the view'
complete -c vornik -n "__vornik_is $drawn" -l lights -rka '(__fish_complete_suffix .lights)' -d 'File of light'
complete -c vornik -n "__vornik_is $drawn" -l partial -d 'Draw what there is of a cut file'
complete -c vornik -n "__vornik_is $drawn" -l camera -x -d 'Camera of the file, from 1'
complete -c vornik -n "__vornik_is $drawn" -l up -xa 'x y z' -d 'Axis that points up'
complete -c vornik -n "__vornik_is $drawn" -l turn -x -d 'Degrees around'
complete -c vornik -n "__vornik_is $drawn" -l tilt -x -d 'Degrees above level'
complete -c vornik -n "__vornik_is $drawn console" -l size -xa '640x480 1280x720 1920x1080' -d 'Pixels'

complete -c vornik -n "__vornik_is render bake" -s o -l output -rF -d 'File to write'
complete -c vornik -n "__vornik_is render bake" -l quiet -d 'No progress bar'
complete -c vornik -n "__vornik_is render" -l samples -xa '1 2 3 4' -d 'Samples along a pixel'
complete -c vornik -n "__vornik_is render" -l rasterizer -xa '0 1' -d 'OpenGL or Direct3D'
complete -c vornik -n "__vornik_is render" -l frame -x -d 'Frame of the animation'
complete -c vornik -n "__vornik_is render" -l frames -x -d 'Frames, A..B'
complete -c vornik -n "__vornik_is render" -l every -x -d 'Each Nth of the frames'
complete -c vornik -n "__vornik_is render" -l fps -x -d 'Pictures a second'

complete -c vornik -n "__vornik_is info" -l json -d 'Print JSON'
complete -c vornik -n "__vornik_is info" -l octree -d 'Figures of the octree'
complete -c vornik -n "__vornik_is console" -F
complete -c vornik -n "__vornik_is 'pack create'" -F
complete -c vornik -n "__vornik_is 'pack create'" -l root -xa '(__fish_complete_directories)' -d 'Folder that names count from'
complete -c vornik -n "__vornik_is 'pack create'" -l prefix -x -d 'Folder in front of all names'
complete -c vornik -n "__vornik_is 'pack list' 'pack verify' 'pack extract'" -k -a '(__fish_complete_suffix .pak)'
complete -c vornik -n "__vornik_is 'pack extract'" -l into -xa '(__fish_complete_directories)' -d 'Folder to unpack into'
complete -c vornik -n "__vornik_is 'pack extract'" -l force -d 'Replace files that exist'

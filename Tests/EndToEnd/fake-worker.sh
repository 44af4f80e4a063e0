#!/bin/sh
# A worker that behaves as $FAKE_WORKER says: complete, fail, die (without a last word), or hold (until the file `go`
# lies in the run directory, for twenty seconds at most, and then complete).
set -eu

out=
audio=
echo "$*" >"${FAKE_WORKER_ARGUMENTS:-/dev/null}"

# speaker-profiles extract --run-dir RUN --speaker LABEL --out FILE
if [ "$1" = speaker-profiles ]; then
    [ "$FAKE_WORKER" = complete ] || { echo "no speech" && exit 3; }
    [ "$6" = SPEAKER_00 ] && vector='1, 0' || vector='0, 1'
    printf '{"speaker": "%s", "embedding": [%s], "model_id": "corvane-acoustic-v1", "dimension": 2,
        "sample_count": 1, "total_speech_seconds": 1.5, "source_run_id": "%s"}' "$6" "$vector" "${4##*/}" >"$8"
    exit 0
fi
while [ $# -gt 0 ]; do
    case $1 in
    --out-dir) out=$2 ;;
    --audio) audio=$2 ;;
    esac
    shift
done

state() { # status message progress
    printf '{"status": "%s", "message": "%s", "progress": %s, "outputs": {}}' "$1" "$2" "$3" >"$out/.state"
    mv "$out/.state" "$out/job_state.json"
}

finish() {
    cat >"$out/result.json" <<'JSON'
{"metadata": {"note": "kept"}, "speakers": [
  {"speaker": "SPEAKER_00", "duration": 61.5, "examples": []},
  {"speaker": "a/b", "duration": 2, "examples": []}],
 "segments": [
  {"start": 0, "end": 1.5, "text": "Good morning.", "speaker": "SPEAKER_00"},
  {"start": 1.5, "end": 3, "text": "Bonjour \u001b[31m.", "speaker": "a/b"}],
 "speaker_names": {}, "unknown_key": [1]}
JSON
    state completed "All done" 1
}

[ -f "$audio" ]
case $FAKE_WORKER in
complete)
    state running "Half way" 0.5
    finish
    ;;
fail)
    state failed "the model is missing" 0.1
    exit 1
    ;;
die)
    echo "first line" >&2
    echo "out of memory" >&2
    kill -9 $$
    ;;
hold)
    state running "Holding" 0.25
    tries=0
    while [ -d "$out" ] && [ ! -e "$out/go" ] && [ $tries -lt 400 ]; do
        sleep 0.05
        tries=$((tries + 1))
    done
    finish
    ;;
esac

#!/usr/bin/env bash
# Carries a text through several encodings, by a host program and by the orv command, calculates,
# logs, and shows each step.
# Usage: demo.sh ORV REENCODE
#   ORV       the orv command
#   REENCODE  the program of examples/reencode.cpp
set -euo pipefail

orv=$(realpath "$1")
reencode=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# show NAME PROGRAM ARG...: prints the command as a reader would type it, and runs it.
show() {
    printf '\n$ %s %s\n' "$1" "${*:3}"
    "${@:2}"
}

bytes() {
    printf '%s: %s bytes\n' "$1" "$(wc -c <"$1")"
    od -A d -t x1 "$1" | head -n "${2:-3}"
}

show orv "$orv" about

printf '\nA text in UTF-8:\n'
printf 'Gr\303\274\303\237e aus K\303\266ln, 5 \342\202\254 a piece\n' | tee utf8.txt
bytes utf8.txt

printf '\nA host reads it by FileInputStream and InputStreamReader and writes it by\n'
printf 'OutputStreamWriter and FileOutputStream (examples/reencode.cpp):\n'
show reencode "$reencode" UTF-8 UTF-16LE utf8.txt utf16.txt
bytes utf16.txt

printf '\nThe orv command goes the same ways:\n'
show orv "$orv" convert -from=UTF-16LE -to=CP1252 -in=utf16.txt -out=cp1252.txt
bytes cp1252.txt
show orv "$orv" convert -from=CP1252 -to=UTF-8 -in=cp1252.txt -out=back.txt
cmp utf8.txt back.txt
printf 'Back in UTF-8, byte for byte the text it was.\n'

printf '\nWhat an encoding cannot carry is replaced, or refused:\n'
printf 'CP437 has no \342\202\254\n' >euro.txt
show orv "$orv" convert -from=UTF-8 -to=CP437 -in=euro.txt
if show orv "$orv" convert -from=UTF-8 -to=CP437 -strict -in=euro.txt -out=never.txt; then
    echo "the strict conversion should have failed" >&2
    exit 1
fi
printf 'Exit status 1, as it should be.\n'

printf '\nNumbers of any size:\n'
show orv "$orv" calc pow -a=2 -b=100
show orv "$orv" calc divide -a=1 -b=7 -scale=30

printf '\nA log, every line of the input an entry:\n'
printf 'started\nlistening on port 80\n' >events.txt
show orv "$orv" log -out=events.log -name=web -level=3 -fields=sequence,timestamp <events.txt
cat events.log
show orv "$orv" log -out=events.xml -format=xml -threads=1 <events.txt
cat events.xml

#!/usr/bin/env python3
"""make-tokens.py VOCABULARY TOKENS

Writes the tokens of the Moonshine recogniser in the form that the runtime reads: a line for each, its bytes in base64
and its number. They are those of the vocabulary that the package llama-tokenizer-js carries, with the recogniser's own
markers behind them.
"""

import base64
import re
import sys

TOKENS = 32768  # what the decoder network tells apart
MARKERS = 3  # unknown, begin, end
BYTE = re.compile(r"<0x([0-9A-F]{2})>")


def token_bytes(token, number):
    byte = BYTE.fullmatch(token)
    if byte:
        return bytes([int(byte[1], 16)])
    return (token if number < MARKERS else token.replace("\u2581", " ")).encode()


def main(vocabulary, tokens):
    with open(vocabulary, encoding="utf-8") as source:
        words = re.search(r'vocab_base64\s*=\s*"([A-Za-z0-9+/=]+)"', source.read())
    if not words:
        sys.exit(f"{vocabulary} has no vocabulary")
    words = base64.b64decode(words[1]).decode().split("\n")
    words += [f"<<ST_{number}>>" for number in range(len(words), TOKENS)]
    if len(words) != TOKENS:
        sys.exit(f"{vocabulary} has {len(words)} words, more than the {TOKENS} of the recogniser")
    with open(tokens, "w", encoding="ascii") as target:
        for number, word in enumerate(words):
            target.write(f"{base64.b64encode(token_bytes(word, number)).decode()} {number}\n")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])

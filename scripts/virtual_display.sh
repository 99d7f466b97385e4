#!/usr/bin/env bash
# scripts/virtual_display.sh FOLDER: is a virtual display, for those who can read FOLDER/authority, which XAUTHORITY is to
# name. The display's number is in FOLDER/display once it can be used.
set -euo pipefail

# One cookie for a display of any host and any number, as Xau(3) has it in a file.
(umask 077 && { printf '\377\377\0\0\0\0\0\022MIT-MAGIC-COOKIE-1\0\020'; head -c 16 /dev/urandom; } >"$1/authority")
exec Xvfb -displayfd 3 -auth "$1/authority" -screen 0 1440x1000x24 -nolisten tcp -noreset 3>"$1/display"

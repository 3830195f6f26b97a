#!/usr/bin/env bash
# Installs what the project needs, builds the reference application and runs it.
# Arguments go to the application (see --help). Without a display it runs on
# Qt's offscreen platform and, unless told otherwise, writes a screenshot.
#   scripts/run-app.sh
#   scripts/run-app.sh --screenshot shot.png
set -euo pipefail

source "$(dirname "${BASH_SOURCE[0]}")/prepare-build.sh"
cmake --build "$build" --parallel "$jobs" --target brennvik-referenceapp

args=("$@")
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  export QT_QPA_PLATFORM=offscreen
  case " ${args[*]-} " in
    *" --screenshot "*|*" --help "*|*" -h "*) ;;
    *) args+=(--screenshot "$root/screenshot.png")
       echo "run-app: no display; writing a screenshot to screenshot.png" ;;
  esac
fi

exec "$build/app/brennvik-referenceapp" "${args[@]}"

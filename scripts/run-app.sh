#!/usr/bin/env bash
# Installs what the project needs, builds the reference application and runs it.
# Arguments go to the application (see --help). Without a display it runs on
# Qt's offscreen platform and, unless told otherwise, writes a screenshot.
#   scripts/run-app.sh
#   scripts/run-app.sh --screenshot shot.png
#   scripts/run-app.sh --qt6 ...      the application built on Qt 6 (build-qt6/,
#                                     screenshot-qt6.png); BRENNVIK_QT_MAJOR=6 does the same
set -euo pipefail

args=()
for arg in "$@"; do
  if [ "$arg" = --qt6 ]; then
    export BRENNVIK_QT_MAJOR=6
  else
    args+=("$arg")
  fi
done

source "$(dirname "${BASH_SOURCE[0]}")/prepare-build.sh"
cmake --build "$build" --parallel "$jobs" --target brennvik-referenceapp

if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  export QT_QPA_PLATFORM=offscreen
  # Qt 6's offscreen screen is 800x800; Qt 5's, 800x600. The same screen makes
  # the same windows.
  if [ "$qt_major" = 6 ]; then
    export QT_QPA_PLATFORM="offscreen:configfile=$root/scripts/offscreen-800x600.json"
  fi
  case " ${args[*]-} " in
    *" --screenshot "*|*" --help "*|*" -h "*) ;;
    *) shot=screenshot.png
       if [ "$qt_major" = 6 ]; then shot=screenshot-qt6.png; fi
       args+=(--screenshot "$root/$shot")
       echo "run-app: no display; writing a screenshot to $shot" ;;
  esac
fi

exec "$build/app/brennvik-referenceapp" ${args[@]+"${args[@]}"}

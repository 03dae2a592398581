#!/usr/bin/env bash
# lintian_finds_no_error.sh PACKAGES
set -euo pipefail

lintian --allow-root --fail-on error "$1"/*.deb

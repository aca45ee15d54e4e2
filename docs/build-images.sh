#!/usr/bin/env bash
# Makes the pictures of docs/images anew that show the terminal: those of the driver's guide are taken
# by the test of a whole shift, those of the pages by the test of all pages. Look at each before you
# commit it.
# usage: docs/build-images.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/setup.sh
. scripts/setup.sh
pictures=build/dev/tests/terminal/screen/pictures

# shellcheck disable=SC2086 # a list of names
need_packages $packages_for_images
build_variant dev dev --target tst_shift tst_screen_pictures
rm -rf "$pictures"

# take TEST [ARGUMENT...]: runs a test, which keeps pictures.
take() {
    quietly "$1" tests/support/run_test.sh "$PWD/build/dev/images" "$1" \
        "$PWD/tests/terminal/screen/with_screen.sh" "$PWD/build/dev/bin/$1" "${@:2}"
}
take tst_shift
take tst_screen_pictures pageIsDrawn:coast-line-1024x600-en

# keep FILE NAME: stores a picture with 256 colours.
keep() {
    pngquant --force --strip --output "docs/images/$2.png" 256 "$pictures/$1.png"
}
for picture in sign-in sell pay paid sales refund jam doubt figures handover; do
    keep "shift-$picture" "driver-$picture"
done
for page in sell zreport fleet; do
    keep "$page-coast-line-1024x600-en" "terminal-$page"
done
keep shift-ticket ticket
git status --short docs/images

#!/usr/bin/env bash
# Every dynamic symbol that libbrinecast.so defines must belong to the public API of korvane.
set -euo pipefail
lib=$1
symbols=$(nm -D --defined-only "$lib" | awk '{ $1=""; $2=""; sub(/^  /, ""); print }' | c++filt)
bad=$(printf '%s\n' "$symbols" | grep -v -E \
  -e '^korvane::Brinecast::(run|getPH|getMolarCharge|getIonAmountToBalanceCharge|getLabIonElement|toCountedChargeName)\(' \
  -e '^korvane::Brinecast::ConcentsWithUnit::' \
  -e '^korvane::Brinecast::speciate\(korvane::Brinecast::Input, korvane::Brinecast::SolveOptions const&\)$' \
  -e '^korvane::Brinecast::Speciator::' \
  -e '^korvane::(KorvaneError|KorvaneAssertion|UnreacheableException)::' \
  -e '^(typeinfo|typeinfo name|vtable) for korvane::(KorvaneError|KorvaneAssertion|UnreacheableException)$' \
  -e '^KORVANE_[0-9A-Z_.]*$' -e '^$' || true)
if [ -n "$bad" ]; then
  echo "libbrinecast.so exports symbols outside the public API:" >&2
  printf '%s\n' "$bad" >&2
  exit 1
fi
for required in 'typeinfo for korvane::KorvaneError' 'typeinfo for korvane::UnreacheableException' \
                'korvane::Brinecast::ConcentsWithUnit::size()' \
                'korvane::Brinecast::Speciator::speciate(korvane::Brinecast::Input const&, korvane::Brinecast::SolveOptions const&) const'; do
  if ! printf '%s\n' "$symbols" | grep -q -F -x "$required"; then
    echo "libbrinecast.so does not export: $required" >&2
    exit 1
  fi
done

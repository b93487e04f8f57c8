#!/usr/bin/env bash
# Every dynamic symbol that the Brinecast library defines must belong to the public API of korvane.
# Usage: check-exports.sh LIBRARY [OBJDUMP]; a Windows DLL's exports are read from its PE export
# table with OBJDUMP (the target's objdump), an ELF library's with nm -D.
set -euo pipefail
lib=$1 objdump=${2:-objdump}
case "$lib" in
  *.dll) symbols=$("$objdump" -p "$lib" | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/p' |
                   awk '/^[[:space:]]*\[ *[0-9]+\]/ { print $NF }' | c++filt) ;;
  *) symbols=$(nm -D --defined-only "$lib" | awk '{ $1=""; $2=""; sub(/^  /, ""); print }' | c++filt) ;;
esac
bad=$(printf '%s\n' "$symbols" | grep -v -E \
  -e '^korvane::Brinecast::(run|getPH|getMolarCharge|getIonAmountToBalanceCharge|getLabIonElement|toCountedChargeName)\(' \
  -e '^korvane::Brinecast::ConcentsWithUnit::' \
  -e '^korvane::Brinecast::speciate\(korvane::Brinecast::Input, korvane::Brinecast::SolveOptions const&\)$' \
  -e '^korvane::Brinecast::speciate\(korvane::Brinecast::Input, korvane::Brinecast::Constraints const&, korvane::Brinecast::SolveOptions const&\)$' \
  -e '^korvane::Brinecast::Speciator::' \
  -e '^korvane::Brinecast::pitzerCoverage\(korvane::Brinecast::Input const&\)$' \
  -e '^korvane::(KorvaneError|KorvaneAssertion|UnreacheableException)::' \
  -e '^(typeinfo|typeinfo name|vtable) for korvane::(KorvaneError|KorvaneAssertion|UnreacheableException)$' \
  -e '^KORVANE_[0-9A-Z_.]*$' -e '^$' || true)
if [ -n "$bad" ]; then
  echo "$lib exports symbols outside the public API:" >&2
  printf '%s\n' "$bad" >&2
  exit 1
fi
for required in 'typeinfo for korvane::KorvaneError' 'typeinfo for korvane::UnreacheableException' \
                'korvane::Brinecast::ConcentsWithUnit::size()' \
                'korvane::Brinecast::pitzerCoverage(korvane::Brinecast::Input const&)' \
                'korvane::Brinecast::Speciator::speciate(korvane::Brinecast::Input const&, korvane::Brinecast::SolveOptions const&) const' \
                'korvane::Brinecast::speciate(korvane::Brinecast::Input, korvane::Brinecast::Constraints const&, korvane::Brinecast::SolveOptions const&)'; do
  if ! printf '%s\n' "$symbols" | grep -q -F -x "$required"; then
    echo "$lib does not export: $required" >&2
    exit 1
  fi
done

#!/usr/bin/env bash
# What a change has to pass. Installs what it needs on Debian 12.
# usage: test.sh             the quick steps: what everyone runs before handing in a change
#        test.sh deep        the steps that take longer
#        test.sh STEP...     some steps; docs/testing.md says what each of them checks
set -euo pipefail
cd "$(dirname "$0")"
source scripts/common.sh

quick=(rooms format release tests samples spooler)
deep=(ubsan ubsan-tests long-runs headers lint reproducible)

step_rooms() { scripts/check-rooms.py; }
step_format() { scripts/check-format.sh; }
step_release() { build release; }
step_tests() { build release && scripts/run-tests.sh release; }
step_samples() { build release "${sample_targets[@]}" && scripts/check-samples.sh release; }
step_spooler() { build release Vorlane && scripts/check-spooler.sh release; }

step_ubsan() { build ubsan; }
step_ubsan-tests() { build ubsan && scripts/run-tests.sh ubsan; }
step_long-runs() { build release && VORLANE_LONG_RUNS=1 GTEST_FILTER='*Property.*' scripts/run-tests.sh release; }
step_headers() { build ubsan all_verify_interface_header_sets; }
step_lint() { build ubsan vrl_interfaces && scripts/check-lint.py build/ubsan; }
step_reproducible() { build release Vorlane && scripts/check-reproducible.sh release; }

steps=("${@:-quick}")
case "${steps[*]}" in
    quick) steps=("${quick[@]}") ;;
    deep) steps=("${deep[@]}") ;;
esac
for step in "${steps[@]}"; do
    [[ " ${quick[*]} ${deep[*]} " == *" $step "* ]] || {
        echo "test.sh: there is no step \"$step\", only: quick deep ${quick[*]} ${deep[*]}" >&2
        exit 2
    }
done

packages=("${packages_to_build[@]}" "${packages_to_run[@]}" "${packages_to_check[@]}")
[[ " ${steps[*]} " != *" lint "* ]] || packages+=("${packages_to_lint[@]}")

step=packages
times=()
# Whether all passed is told by the step, not by the status: a signal leaves that of whatever ran before.
finish() {
    echo
    [ ${#times[@]} -eq 0 ] || printf '%s\n' "${times[@]}"
    if [ "$step" = none ]; then
        say "All checks passed in $SECONDS s."
    else
        say "The step $step failed after $SECONDS s. Repeat it with: ./test.sh ${step/packages/}"
    fi
}
trap finish EXIT

scripts/install-packages.sh "${packages[@]}"
for step in "${steps[@]}"; do
    say "$step"
    began=$SECONDS
    "step_$step"
    times+=("$(printf '%-14s %4d s' "$step" $((SECONDS - began)))")
done
step=none

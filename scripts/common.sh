# What demo.sh and test.sh have in common; to be sourced from the root of the repository.

# What the scripts use, by the Debian package that brings it: build tools, cross compiler, IDL compiler with the platform's
# definitions, test framework; Wine, a print server, a listener for it; the checks of the sources.
packages_to_build=(python3 cmake ninja-build g++-mingw-w64-x86-64-posix mingw-w64-tools libwine-dev googletest)
packages_to_run=(wine wine64 cups cups-client socat)
packages_to_check=(clang-format-14)
packages_to_lint=(clang-tidy-14)

# What the samples need.
sample_targets=(Vorlane spooler_simulator labelprinter_monitor labelprinter_interface watch events)

say() { printf '\n== %s\n' "$*"; }

# build PRESET [TARGET...]: configures and builds it, or those targets of it.
build() {
    local preset=$1 quiet=()
    shift
    cmake --preset "$preset" >"$(log_of "$preset" configure)" 2>&1 || { cat "$(log_of "$preset" configure)"; return 1; }
    [ -t 1 ] || quiet=(-- --quiet)
    cmake --build --preset "$preset" ${*:+--target "$@"} "${quiet[@]}"
}

log_of() {
    mkdir -p build/logs
    printf 'build/logs/%s-%s.log' "$1" "$2"
}

# under_wine PRESET COMMAND...: runs a Windows program in the preset's prefix, on the spooler that $spooler names:
# "simulator" is the winspool.drv beside Vorlane.dll, anything else Wine's own.
under_wine() {
    local preset=$1 override=b
    shift
    [ "${spooler:-}" = simulator ] && override=n
    env -u DISPLAY WINEPREFIX="$PWD/build/$preset/wine" WINEDEBUG=-all \
        WINEDLLOVERRIDES="winspool.drv=$override;mscoree=;mshtml=" wine "$@"
}

# register PRESET: makes the preset's prefix and registers its Vorlane.dll there.
register() {
    cmake/make-wine-prefix.sh "$PWD/build/$1/wine"
    spooler=simulator under_wine "$1" regsvr32 /s "$(windows_path "build/$1/bin/Vorlane.dll")"
}

# windows_path FILE: the file as a Windows program names it.
windows_path() {
    printf 'Z:%s' "$(realpath -m "$1" | tr / '\\')"
}

# on_simulator PRESET CONFIG FOLDER COMMAND...: runs a Windows program on the simulated spooler that samples/spooler/CONFIG
# describes, a fresh one in FOLDER. MODULES in it stands for the folder of the preset's modules.
on_simulator() {
    local preset=$1 config=$2 folder=$3
    shift 3
    rm -rf "$folder"
    mkdir -p "$folder"
    sed "s|MODULES|$(windows_path "build/$preset/bin" | sed 's|\\|\\\\|g')|" "samples/spooler/$config" >"$folder/$config"
    VORLANE_SPOOLER_CONFIG=$(windows_path "$folder/$config") spooler=simulator under_wine "$preset" "$@"
}

# on_kept PRESET FILE COMMAND...: runs a Windows program on the simulated spooler that FILE describes; what becomes of it
# stays in that file.
on_kept() {
    local preset=$1 file
    file=$(windows_path "$2")
    shift 2
    VORLANE_SPOOLER_CONFIG=$file VORLANE_SPOOLER_SAVE=$file spooler=simulator under_wine "$preset" "$@"
}

# on_warehouse PRESET FOLDER SCRIPT ARGUMENT...: runs a sample script on the simulated warehouse.
on_warehouse() {
    local preset=$1 folder=$2 script=$3
    shift 3
    on_simulator "$preset" warehouse.ini "$folder" cscript //nologo "$(windows_path "samples/$script")" "$@"
}

# on_labels PRESET FOLDER COMMAND...: runs a program on the simulated label printers.
on_labels() {
    local preset=$1 folder=$2
    shift 2
    on_simulator "$preset" labels.ini "$folder" "$@"
}

# on_dock PRESET FOLDER PROGRAM ARGUMENT...: runs a C++ sample on the simulated printer that prints in real time.
on_dock() {
    local preset=$1 folder=$2 program=$3
    shift 3
    on_simulator "$preset" dock.ini "$folder" "build/$preset/bin/$program.exe" "$@"
}

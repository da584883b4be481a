# Sourced by the other scripts: installs the Debian packages that are missing.

# need PACKAGE...: nothing happens when all of them are installed.
need() {
    local missing=() package
    for package in "$@"; do
        if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing+=("$package")
        fi
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages: ${missing[*]}. Install them as root, then run this again." >&2
            exit 1
        fi
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get -q update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "${missing[@]}"
}

# need_axe: installs axe-core, which looks for what keeps people from reading the pages, into build-node of this tree.
need_axe() {
    local version=4.10.3
    if grep -qs "\"version\": \"$version\"" build-node/node_modules/axe-core/package.json; then
        return
    fi
    command -v npm >/dev/null || need npm
    echo "Installing axe-core $version"
    npm install --silent --no-audit --no-fund --no-save --prefix build-node "axe-core@$version"
}

# Needed by every build.
build_packages=(g++ cmake ninja-build ccache qt6-base-dev libssl-dev libsqlite3-dev libpq-dev)
# Also needed by the tests: GoogleTest, the other compiler, and tools that examine the library and the pages.
test_packages=(libgtest-dev clang pkg-config binutils groff-base python3 python3-jsonschema)
# And those that compare binary interfaces and read the completions of shells; without them these tests are skipped.
test_packages+=(abigail-tools git zsh fish)
# The pages are opened in a browser; without one those tests are skipped. They need axe-core, too: need_axe.
test_packages+=(chromium)
# And what the Python package is built with and tested by.
test_packages+=(pybind11-dev python3-dev python3-numpy python3-pytest python3-mypy python3-pandas
    python3-xarray python3-scipy python3-matplotlib)
# And the programs that open what kxmath writes.
test_packages+=(gwyddion python3-vtk9)
# Also needed by the fuzzers: the other compiler with its sanitizers.
fuzz_packages=(clang libclang-rt-14-dev python3)
# Also needed by the benchmarks: Google Benchmark, and the libraries that ours is compared with.
benchmark_packages=(libbenchmark-dev python3 libboost-dev libhwy-dev libgsl-dev libalglib-dev libeigen3-dev
    libnanoflann-dev libpcl-dev libopencv-dev pkg-config)

if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER:-}" ]; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
    export CCACHE_SLOPPINESS=pch_defines,time_macros # required for precompiled headers
fi

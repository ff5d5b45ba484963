# Front door of the build. Everything below builds with CMake and Ninja; the presets stand in CMakePresets.json.
#
#   make demo      build, cut a portrait from the sample picture, leave the result in out/
#   make test      build and run all tests
#
# Both first install the Debian packages that are missing, as root or through sudo.

# The packages of Debian 12 that each kind of work needs; the only place where they are listed.
build_packages := g++ cmake ninja-build libjpeg-dev libpng-dev zlib1g-dev libcli11-dev nlohmann-json3-dev libexif-dev
test_packages := $(build_packages) libgtest-dev pkg-config abigail-tools python3-numpy parallel
bench_packages := $(test_packages) libbenchmark-dev
coverage_packages := $(test_packages) gcovr
portability_packages := $(test_packages) clang
valgrind_packages := $(test_packages) valgrind libc6-dbg
docs_packages := doxygen
figures_packages := $(build_packages) python3-numpy python3-pil
wheel_packages := $(build_packages) python3-pip python3-setuptools python3-wheel
python_packages := $(wheel_packages) python3-numpy python3-venv mypy
scale_packages := $(build_packages) parallel openssh-server openssh-client iproute2
fuzz_packages := $(build_packages) clang-14 libclang-rt-14-dev
deb_packages := $(build_packages) dpkg-dev
deb_test_packages := $(deb_packages) lintian debootstrap

jobs ?= $(shell nproc 2>/dev/null || echo 2)
prefix ?= /usr/local
DESTDIR ?=
out := out
version := $(shell sed -n 's/^project.portraitcut VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)

# Seconds for each fuzz target, and which of them: make fuzz fuzz_time=1200 fuzz_targets='jpeg png'
fuzz_time ?= 60
fuzz_targets ?= jpeg png bmp buffers geometry grid models detect calls
ctest := ctest --output-on-failure --no-tests=error -j$(jobs)

# Address space randomisation with many bits leaves no room for the shadow of older thread sanitizers.
tsan_run := $(shell setarch -R true 2>/dev/null && echo setarch -R)

export ASAN_OPTIONS ?= detect_leaks=1:allocator_may_return_null=1
export UBSAN_OPTIONS ?= print_stacktrace=1
export TSAN_OPTIONS ?= halt_on_error=1

.PHONY: all build demo test bench asan tsan faults valgrind coverage fuzz format docs figures
.PHONY: wheel python-test deb deb-test install uninstall clean help
.PHONY: packages-build packages-test packages-bench packages-coverage packages-fuzz packages-docs packages-figures
.PHONY: packages-valgrind packages-wheel packages-python packages-deb packages-deb-test

all: build

# $(call install_missing,packages): nothing is done, and nothing said, when all are there.
define install_missing
@command -v dpkg-query >/dev/null || { echo "Not a Debian system: these must be there: $(1)"; exit 0; }; \
missing=; \
for package in $(1); do \
  dpkg-query -W -f='$${Status}' $$package 2>/dev/null | grep -q '^install ok installed' || missing="$$missing $$package"; \
done; \
[ -n "$$missing" ] || exit 0; \
if [ "$$(id -u)" = 0 ]; then as_root=; \
elif command -v sudo >/dev/null; then as_root=sudo; \
else echo "Missing packages, and neither root nor sudo to install them. As root: apt-get install$$missing"; exit 1; fi; \
echo "Installing missing Debian packages$${as_root:+ through sudo}:$$missing"; \
$$as_root apt-get update -q && \
$$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends $$missing
endef

packages-build: ; $(call install_missing,$(build_packages))
packages-test: ; $(call install_missing,$(test_packages))
packages-bench: ; $(call install_missing,$(bench_packages))
packages-valgrind: ; $(call install_missing,$(valgrind_packages))
packages-coverage: ; $(call install_missing,$(coverage_packages))
packages-portability: ; $(call install_missing,$(portability_packages))
packages-docs: ; $(call install_missing,$(docs_packages))
packages-figures: ; $(call install_missing,$(figures_packages))
packages-wheel: ; $(call install_missing,$(wheel_packages))
packages-python: ; $(call install_missing,$(python_packages))
packages-scale: ; $(call install_missing,$(scale_packages))
packages-fuzz: ; $(call install_missing,$(fuzz_packages))
packages-deb: ; $(call install_missing,$(deb_packages))
packages-deb-test: ; $(call install_missing,$(deb_test_packages))

build: packages-build
	cmake --preset release -DPORTRAITCUT_BUILD_TESTS=OFF -DPORTRAITCUT_BUILD_TRAINING=OFF
	cmake --build --preset release -j $(jobs)

demo: build
	@mkdir -p $(out)
	build/release/examples/cut_portrait tests/data/average_faces.png $(out)/portrait.jpg 240 320 0.8
	build/release/examples/annotate tests/data/average_faces.png $(out)/annotated.png 240 320 0.8
	build/release/apps/portraitcut/portraitcut cut tests/data -o $(out)/portraits --face all --size 240x320 --force
	@echo
	@echo "The portrait:                    $(abspath $(out))/portrait.jpg"
	@echo "Faces, points and cut:           $(abspath $(out))/annotated.png"
	@echo "All faces of all test pictures:  $(abspath $(out))/portraits"

# The training programs are built too: they use the library's inner parts, and a change of those must not break them.
test: packages-test
	cmake --preset release -DPORTRAITCUT_BUILD_TESTS=ON -DPORTRAITCUT_BUILD_TRAINING=ON
	cmake --build --preset release -j $(jobs)
	cd build/release && $(ctest)

bench: packages-bench
	cmake --preset release -DPORTRAITCUT_BUILD_BENCH=ON -DPORTRAITCUT_BUILD_TESTS=OFF -B build/bench
	cmake --build build/bench -j $(jobs)
	cmake --build build/bench --target run_bench

asan: packages-test
	cmake --preset asan-ubsan
	cmake --build --preset asan-ubsan -j $(jobs)
	cd build/asan-ubsan && $(ctest)

tsan: packages-test
	cmake --preset tsan
	cmake --build --preset tsan -j $(jobs) --target thread_tests
	cd build/tsan && $(tsan_run) $(ctest) -L threads

.PHONY: golden-record portability packages-portability
# The golden numbers of this build become those that every build is held to.
golden-record: packages-test
	cmake --preset release -DPORTRAITCUT_BUILD_TESTS=ON
	cmake --build --preset release -j $(jobs) --target golden
	sed -i '/^#/!d' tests/golden/expected.txt
	build/release/tests/golden/golden tests/data/average_faces.png >> tests/golden/expected.txt
	git --no-pager diff --stat tests/golden/expected.txt

portability: packages-portability
	@mkdir -p build/portability
	tests/golden/portability.sh . build/portability $(jobs)

# Eight threads over all functions, for `seconds`; then the same under the thread sanitizer.
seconds ?= 60
.PHONY: soak soak-tsan
soak: packages-test
	cmake --preset release -DPORTRAITCUT_BUILD_TESTS=ON
	cmake --build --preset release -j $(jobs) --target soak
	build/release/tests/soak/soak tests/data/average_faces.png $(seconds)

soak-tsan: packages-test
	cmake --preset tsan
	cmake --build --preset tsan -j $(jobs) --target soak
	$(tsan_run) build/tsan/tests/soak/soak tests/data/average_faces.png $(seconds)

# The binary interface against tests/abi/portraitcut.abi, as make test does too; and that record made anew.
.PHONY: abi abi-record reproducible
abi abi-record: packages-test
	cmake --preset release -DPORTRAITCUT_BUILD_TESTS=ON
	cmake --build --preset release -j $(jobs) --target $(if $(filter abi,$@),portraitcut_abi portraitcut,record_abi)
	$(if $(filter abi,$@),cd build/release && $(ctest) -R 'frame.(abi|exports)',git --no-pager diff --stat tests/abi)

# Two builds of the last commit in different folders, installed, have to be the same to the byte.
reproducible: packages-build
	tests/frame/reproducible.sh build/reproducible $(jobs)

# Every allocation of every call fails in turn; make test does it for some of them.
faults: packages-test
	cmake --preset release -DPORTRAITCUT_BUILD_TESTS=ON
	cmake --build --preset release -j $(jobs) --target test_faults
	PORTRAITCUT_FAULTS=all build/release/tests/faults/test_faults

# A job of nearly everything with a library that is loaded and unloaded twice, at each processor level. No error and no
# block lost, and nothing is suppressed.
valgrind: packages-valgrind
	cmake --preset release -DPORTRAITCUT_BUILD_TESTS=ON
	cmake --build --preset release -j $(jobs) --target unload_loop
	for level in base sse41 avx2; do \
	  PORTRAITCUT_CPU=$$level valgrind -q --error-exitcode=9 --leak-check=full --keep-debuginfo=yes \
	    --errors-for-leak-kinds=definite,indirect,possible --show-leak-kinds=definite,indirect,possible \
	    build/release/tests/faults/unload_loop build/release/libportraitcut.so tests/data build 2 whole || exit 1; \
	done

coverage: packages-coverage
	cmake --preset coverage
	cmake --build --preset coverage -j $(jobs)
	cd build/coverage && $(ctest)
	gcovr --root . --filter '(primitives|image|codecs|detect|eyes|features|framing|api)/' build/coverage \
	  --html-details build/coverage/coverage.html --print-summary

# The pictures of the documents, out of the sample pictures and the library's data.
figures: build packages-figures
	/usr/bin/python3 docs/figures/tuning.py
	/usr/bin/python3 docs/figures/method.py

# A name without documentation, or a reference to nothing, fails.
docs: packages-docs
	@mkdir -p build/docs
	{ cat docs/Doxyfile; echo "PROJECT_NUMBER = $(version)"; echo "OUTPUT_DIRECTORY = build/docs"; } | doxygen -
	@echo "The pages:                       $(abspath build/docs)/html/index.html"

# A Python wheel with a library of its own; see python/CMakeLists.txt.
wheel: build packages-wheel
	cmake --build build/release -j $(jobs) --target wheel
	@mkdir -p $(out)
	cp build/release/python/wheel/*.whl $(out)
	@echo "The wheel:                       $$(ls $(abspath $(out))/*.whl)"

python-test: wheel packages-python
	cmake --build build/release -j $(jobs) --target check_wheel

# Work spread over two hosts by real ssh, one of which dies; see docs/scale.md. As root.
.PHONY: scale-hosts packages-scale
scale-hosts: build packages-scale
	tests/apps/scale_hosts.sh build/release/apps/portraitcut/portraitcut tests/data/average_face_1.jpg 200

fuzz: packages-fuzz
	cmake --preset fuzz
	cmake --build --preset fuzz -j $(jobs) --target fuzz
	tests/fuzz/run.sh build/fuzz $(fuzz_time) $(jobs) $(fuzz_targets)

# Debian packages, with the flags that Debian builds with. The time of the last commit goes into them.
deb_flags = DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get
deb: export SOURCE_DATE_EPOCH ?= $(shell git log -1 --format=%ct 2>/dev/null || stat -c %Y CMakeLists.txt)
deb: packages-deb
	CFLAGS="$$($(deb_flags) CFLAGS) $$($(deb_flags) CPPFLAGS)" LDFLAGS="$$($(deb_flags) LDFLAGS)" \
	CXXFLAGS="$$($(deb_flags) CXXFLAGS) $$($(deb_flags) CPPFLAGS)" \
	cmake -S . -B build/deb -G Ninja -DCMAKE_BUILD_TYPE=Release -DPORTRAITCUT_DEBIAN=ON -DCMAKE_INSTALL_PREFIX=/usr \
	  -DCMAKE_SKIP_INSTALL_RPATH=ON -DPORTRAITCUT_BUILD_TESTS=OFF -DPORTRAITCUT_BUILD_EXAMPLES=OFF
	cmake --build build/deb -j $(jobs)
	rm -rf build/deb/packages
	cd build/deb && cpack
	@mkdir -p $(out)
	cp build/deb/packages/*.deb $(out)

# Lintian's opinion; then installed, used and removed in a fresh Debian system of their own (debootstrap, as root).
deb-test: deb packages-deb-test
	lintian --allow-root --fail-on error,warning build/deb/packages/*.deb
	tests/packages/check_debs.sh build/deb/packages $(version) build/deb/check

format: ; git ls-files '*.cpp' '*.hpp' '*.c' '*.h' | xargs clang-format -i

install: build
	packaging/install.sh install build/release "$(prefix)" "$(DESTDIR)"

# Takes away all that `make install` with the same prefix and DESTDIR made, folders included.
uninstall: ; packaging/install.sh uninstall build/release "$(prefix)" "$(DESTDIR)"

clean: ; rm -rf build $(out)

help:
	@echo "make demo | test | asan | tsan | faults | valgrind | fuzz | scale-hosts | coverage | bench | docs | figures | format | clean"
	@echo "     soak | soak-tsan | portability | golden-record | abi | abi-record | reproducible"
	@echo "     build | install | uninstall | wheel | python-test | deb | deb-test"

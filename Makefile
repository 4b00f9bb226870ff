# SPDX-License-Identifier: GPL-3.0-or-later
# A thin front to CMake; CMakePresets.json holds the configurations.
PREFIX ?= /usr/local

.PHONY: all tools setup demo test sanitize clang valgrind coverage lint cppcheck bench fuzz install \
  dist package package-test reproducible distributions arm64 soak mutants clean
all: tools
	cmake --preset release
	cmake --build --preset release

tools:
	@command -v cmake >/dev/null && command -v ninja >/dev/null || { \
	  echo 'cmake or ninja is missing: packaging/install-dependencies installs what the build needs'; exit 1; }

setup:
	packaging/install-dependencies test clang valgrind coverage lint cppcheck bench fuzz

demo:
	packaging/install-dependencies build
	cmake --preset demo
	cmake --build --preset demo --target vantrel
	build/vantrel decode --read=examples/patterns.csv

test:
	packaging/install-dependencies test
	$(MAKE) all
	ctest --preset release

sanitize:
	packaging/install-dependencies test
	cmake --preset sanitize
	cmake --build --preset sanitize
	ctest --preset sanitize

clang:
	packaging/install-dependencies clang
	cmake --preset clang
	cmake --build --preset clang
	ctest --preset clang

valgrind:
	packaging/install-dependencies valgrind
	cmake --preset valgrind
	cmake --build --preset valgrind
	ctest --preset valgrind

coverage:
	packaging/install-dependencies coverage
	cmake --preset coverage
	cmake --build --preset coverage
	find build-coverage -name '*.gcda' -delete  # counts of an older build
	ctest --preset coverage
	cmake --build --preset coverage --target coverage_report

lint:
	packaging/install-dependencies lint
	cmake --preset release
	cmake --build --preset release --target version_info
	packaging/lint build

cppcheck:
	packaging/install-dependencies cppcheck
	cmake --preset release
	cmake --build --preset release --target version_info
	packaging/cppcheck build

bench:
	packaging/install-dependencies bench
	cmake --preset bench
	cmake --build --preset bench --target run_benchmarks

fuzz:
	packaging/install-dependencies fuzz
	cmake --preset fuzz
	cmake --build --preset fuzz
	fuzz/run build-fuzz 60

soak:
	packaging/install-dependencies test
	$(MAKE) all
	bench/soak build

mutants:
	packaging/install-dependencies test
	packaging/mutants

install:
	packaging/install-dependencies build
	cmake --preset demo -DCMAKE_INSTALL_PREFIX="$(PREFIX)"
	cmake --build --preset demo
	cmake --install build

dist:
	packaging/install-dependencies build
	packaging/dist build-dist

package:
	packaging/install-dependencies package
	packaging/build-package build-package
	lintian --fail-on error,warning --allow-root build-package/*.deb

package-test: package
	packaging/test-packages build-package

reproducible:
	packaging/install-dependencies package
	packaging/check-reproducible

distributions:
	packaging/install-dependencies distributions
	packaging/distributions

arm64:
	packaging/install-dependencies arm64
	packaging/try-arm64

clean:
	rm -rf build build-*

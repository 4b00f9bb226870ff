# SPDX-License-Identifier: GPL-3.0-or-later
# A thin front to CMake; CMakePresets.json holds the configurations.
PREFIX ?= /usr/local

.PHONY: all setup demo test sanitize lint bench fuzz install clean
all:
	cmake --preset release
	cmake --build --preset release

setup:
	packaging/install-dependencies

demo: setup all
	build/vantrel decode --read=examples/patterns.csv

test: setup all
	ctest --preset release

sanitize: setup
	cmake --preset sanitize
	cmake --build --preset sanitize
	ctest --preset sanitize

lint: setup
	cmake --preset release
	packaging/lint build

bench: setup
	cmake --preset bench
	cmake --build --preset bench --target run_benchmarks

fuzz: setup
	cmake --preset fuzz
	cmake --build --preset fuzz
	fuzz/run build-fuzz 60

install: all
	cmake --install build --prefix $(PREFIX)

clean:
	rm -rf build build-*

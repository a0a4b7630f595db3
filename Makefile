# The two commands of the README, and what they rest on.

PRESET ?= release
JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 60
PREFIX ?= /usr/local

.PHONY: help setup build demo test windows asan fuzz bench reference install package exports format check-format tidy clean

help:
	@echo "make demo          render the sample scene"
	@echo "make test          build and run every test"
	@echo "make build         build the library and the command-line host"
	@echo "make install       install into PREFIX (/usr/local)"
	@echo "make package       make Debian packages, or with PRESET=windows a .zip, in build/<preset>/packages"
	@echo "make windows       cross-build everything for Windows"
	@echo "make asan          build and run the tests with the sanitizers"
	@echo "make fuzz          run every fuzz target for FUZZ_SECONDS seconds (60)"
	@echo "make bench         run the benchmarks"
	@echo "make reference     pages of every exported name, by Doxygen, into build/reference"
	@echo "make format        lay out the code"
	@echo "make tidy          run clang-tidy"
	@echo "make exports       take the library's call surface as the one to keep"
	@echo "make setup         install what is missing (demo and test do it themselves)"

setup:
	@scripts/setup

build: setup
	@[ $(PRESET) != windows ] || scripts/windows-deps
	@cmake --preset $(PRESET) > build-$(PRESET).log 2>&1 || (cat build-$(PRESET).log; exit 1)
	@cmake --build build/$(PRESET) -j $(JOBS)

demo: build
	@scripts/demo build/$(PRESET) out

# The release build's tests take those for Windows along.
test: build
	@windows=; \
	if [ "$(PRESET)" = release ]; then \
	    if scripts/windows-deps; then \
	        $(MAKE) --no-print-directory windows && windows=build/windows || exit 1; \
	    else \
	        echo "The tests for Windows are left out: the libraries that they link are missing"; \
	    fi; \
	fi; \
	scripts/test build/$(PRESET) $$windows

windows: setup
	@scripts/windows-deps
	@cmake --preset windows > build-windows.log 2>&1 || (cat build-windows.log; exit 1)
	@cmake --build build/windows -j $(JOBS)

install: build
	@cmake --install build/$(PRESET) --prefix $(PREFIX) > /dev/null

package: build
	@cd build/$(PRESET) && cpack | sed -n 's/^CPack: - package: \(.*\) generated\.$$/\1/p'

# After a deliberate change of what is exported; its test tells of any other.
exports: build
	@python3 tests/host/exports.py --list build/$(PRESET)/lib/libvornik.so > tests/host/exported.txt

asan:
	@$(MAKE) --no-print-directory test PRESET=asan

fuzz: setup
	@scripts/fuzz $(FUZZ_SECONDS)

bench: build
	@scripts/bench build/$(PRESET)

reference: setup
	@doxygen Doxyfile
	@echo "The reference is build/reference/html/index.html"

format:
	@scripts/format

check-format:
	@scripts/format --check

tidy: build
	@scripts/tidy build/$(PRESET)

clean:
	rm -rf build out build-*.log

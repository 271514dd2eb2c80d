# Every target first installs what it needs (scripts/install-dependencies, quick if nothing is missing). The work is
# done by scripts/; cmake with its presets works without them as well.

.PHONY: help build windows demo test lint fuzz faults bench screens dist clean
.NOTPARALLEL:

help:
	@echo 'make demo     build, check and pack the sample product, show its pages, install it, uninstall it, prove that nothing is left'
	@echo 'make test     lint, then all tests: natively, with sanitizers, and as Windows programs under Wine'
	@echo 'make build    the Linux programs:   build/linux/bin/'
	@echo 'make windows  the Windows programs: build/windows/bin/'
	@echo 'make lint     layers, format, clang-tidy, pairs of sources and tests'
	@echo 'make fuzz     every fuzz target for FUZZ_SECONDS (60) each'
	@echo 'make faults   every call of the sample product fails, in every way, and ends the program: a table of what is lost'
	@echo 'make bench    measurements against reference tools'
	@echo 'make screens  pictures of what users of the sample product see, in docs/screens'
	@echo 'make dist     the setups of both platforms'
	@echo 'make clean    removes build/'

build:
	@scripts/install-dependencies native
	@scripts/build linux programs

windows:
	@scripts/install-dependencies test
	@scripts/build windows programs

demo: build
	@scripts/install-dependencies demo
	@scripts/demo

test:
	@scripts/install-dependencies test
	@scripts/test-all

lint:
	@scripts/install-dependencies test
	@scripts/lint

fuzz:
	@scripts/install-dependencies fuzz
	@scripts/fuzz-all

faults:
	@scripts/install-dependencies native
	@scripts/faults-all

bench: build
	@scripts/install-dependencies bench
	@bench/run

screens: build windows
	@scripts/install-dependencies screens
	@scripts/capture-screens
	@scripts/make-screens

dist: build windows
	@scripts/dist

clean:
	rm -rf build

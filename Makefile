# The front door: every target installs what it needs, builds what it needs, and runs.

PREFIX ?= /usr/local

.PHONY: run test bench bench-server docs format install program build server package packages server-packages test-packages \
  sanitizers lint format-check

run: program
	examples/first_study.sh build/release/bin/zelkova

test: test-packages build server
	ctest --preset release

bench: build
	build/release/bin/zelkova-bench $(ARGS)

# What a call through automation costs; under Wine.
bench-server: build server
	unittests/component/run x64 benchmark

# The reference pages come from the catalogue; a test fails when they are stale.
docs: build
	mkdir -p docs/reference
	build/release/bin/zelkova list --markdown > docs/reference/README.md
	for class in $$(build/release/bin/zelkova list | cut -d ' ' -f 1); do \
	  build/release/bin/zelkova describe $$class --markdown > docs/reference/$$class.md; done

install: program
	cmake --install build/release --prefix $(PREFIX)

program: packages
	cmake --preset release
	cmake --build --preset release --target zelkova_program

build: packages
	cmake --preset release
	cmake --build --preset release

# The component server of both widths, cross-built; its interface definition comes from the native build.
server: server-packages build
	for width in x64 x86; do cmake --preset server-$$width && cmake --build --preset server-$$width || exit 1; done

# Zip files of the component server in dist/.
package: server
	component/package

sanitizers: test-packages
	cmake --preset sanitizers
	cmake --build --preset sanitizers
	ctest --preset sanitizers

format: packages
	git ls-files -co --exclude-standard '*.h' '*.cpp' | xargs clang-format -i

format-check: packages
	git ls-files -co --exclude-standard '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

lint: build server
	.ci/lint

packages:
	.ci/install-packages

test-packages:
	.ci/install-packages tests

server-packages:
	.ci/install-packages server

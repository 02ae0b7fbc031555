# The two front-door commands: `make test` and `make demo`. Everything else is CMake.
.PHONY: all bootstrap build test asan demo format tidy clean

PRESET ?= default

all: build

bootstrap:
	@./scripts/bootstrap.sh

build: bootstrap
	@cmake --preset $(PRESET) >/dev/null
	@cmake --build --preset $(PRESET)

test: build
	@ctest --preset $(PRESET)

asan:
	@$(MAKE) --no-print-directory test PRESET=asan

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

tidy: build
	@git ls-files 'platform/*.cpp' 'pgm/*.cpp' 'tools/*.cpp' | xargs clang-tidy -quiet -p build/$(PRESET)

clean:
	rm -rf build

# The two front-door commands: `make test` and `make demo`. Everything else is CMake.
.PHONY: all bootstrap build test asan demo clean

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

clean:
	rm -rf build

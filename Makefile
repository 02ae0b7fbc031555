# The two front-door commands: `make test` and `make demo`. Everything else is CMake.
.PHONY: all bootstrap build test asan demo format tidy clean fuzz-smoke fuzz-long fuzz-merge fuzz-coverage

PRESET ?= default

all: build

bootstrap:
	@./scripts/bootstrap.sh

build: bootstrap
	@cmake --preset $(PRESET) >/dev/null
	@cmake --build --preset $(PRESET)

test: build
	@ctest --preset $(PRESET)

demo: build
	@./scripts/demo.sh build/$(PRESET)

asan:
	@$(MAKE) --no-print-directory test PRESET=asan

# Fuzzing (doc/fuzzing.md): a short run of every target, the long campaign, corpus
# minimisation and the coverage of each parser from its corpus.
fuzz-smoke: bootstrap
	@./scripts/fuzz.sh smoke $(FUZZ_SECONDS)

fuzz-long: bootstrap
	@./scripts/fuzz.sh long $(FUZZ_SECONDS)

fuzz-merge: bootstrap
	@./scripts/fuzz.sh merge

fuzz-coverage: bootstrap
	@./scripts/fuzz.sh coverage

format:
	@git ls-files '*.cpp' '*.h' | xargs clang-format -i

tidy: build
	@git ls-files 'platform/*.cpp' 'pgm/*.cpp' 'tools/*.cpp' | xargs clang-tidy -quiet -p build/$(PRESET)

clean:
	rm -rf build

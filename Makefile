# The two front-door commands: `make test` and `make demo`. Everything else is CMake.
.PHONY: all bootstrap build test asan tsan demo bench format tidy clean fuzz-smoke fuzz-long fuzz-merge fuzz-coverage

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

# ThreadSanitizer over the concurrent uses the public headers document; the preset builds
# only the library, the databases and that test.
tsan:
	@$(MAKE) --no-print-directory test PRESET=tsan

# Every Google Benchmark program of bench/, each with its median of five runs, then what a
# user feels (bench/cold_start, 20 rounds) and the start-up cost of whole processes
# (bench/startup_cost.py, under valgrind); BENCH_ARGS adds Google Benchmark options (for
# example BENCH_ARGS=--benchmark_filter=Grammar).
bench: build
	@for b in $$(find build/$(PRESET)/bench -maxdepth 1 -type f -executable -name '*bench*' | sort); do \
	  echo "== $$b"; \
	  $$b --benchmark_repetitions=5 --benchmark_report_aggregates_only=true $(BENCH_ARGS) \
	    2>/dev/null | grep -E '_median|^Benchmark|^---' || exit 1; \
	done
	@echo "== build/$(PRESET)/bench/cold_start"
	@build/$(PRESET)/bench/cold_start 20
	@echo "== bench/startup_cost.py"
	@/usr/bin/python3 bench/startup_cost.py build/$(PRESET)

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

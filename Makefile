# Short commands for the whole project. `make help` lists them.
SHELL := /bin/bash
.SHELLFLAGS := -euo pipefail -c
JOBS ?= $(shell nproc)
export CTEST_PARALLEL_LEVEL ?= $(JOBS)

DATA := tests/data
# All but the templates of a new module, which are no C++ before their names stand in them.
FORMATTED := find $(wildcard include source plugin tools modules tests bench fuzz examples cmake) \
  -path tools/new_module -prune -o \( -name '*.h' -o -name '*.cpp' \) -print

.PHONY: help demo build check asan tsan coverage format format-check lint bench fuzz clean
.DEFAULT_GOAL := help

help:  ## Lists the commands
	@grep -hE '^[a-z-]+:.*##' $(MAKEFILE_LIST) | sed -E 's/:[^#]*## /\t/' | expand -t 16

demo: install-build  ## Builds the program and shows real files: a run, weather, motion capture, a recording
	cmake --preset release
	cmake --build --preset release -j $(JOBS) --target senmark_tool gpx motion series
	mkdir -p build/demo
	build/senmark formats
	build/senmark why $(DATA)/gpx/run_garmin_1_1.gpx
	build/senmark tree $(DATA)/gpx/run_garmin_1_1.gpx
	build/senmark samples $(DATA)/gpx/run_garmin_1_1.gpx Position --limit 5
	build/senmark plot $(DATA)/gpx/run_garmin_1_1.gpx Heartrate
	build/senmark why $(DATA)/weather_death_valley_2021.csv
	build/senmark samples $(DATA)/weather_death_valley_2021.csv TMAX \
	  --from 2021-07-07T00:00:00.0Z --to 2021-07-12T00:00:00.0Z
	build/senmark plot $(DATA)/weather_death_valley_2021.csv TMAX
	build/senmark convert --force $(DATA)/dab_30hz.bvh build/demo/dab.tdjson
	build/senmark info $(DATA)/dab_30hz.bvh
	build/senmark tree $(DATA)/dab_30hz.bvh | sed -n '1,12p'
	build/senmark samples $(DATA)/dab_30hz.bvh Hipsrotation --from 00:00:03:00 --to 00:00:03:05
	build/senmark plot $(DATA)/dab_30hz.bvh Hipsrotation
	build/senmark samples $(DATA)/dab_30hz.bvh Hipsrotation --plot build/demo/dab.svg --force
	build/senmark info $(DATA)/weather_montreal_utc_v2.tdjson
	build/senmark samples $(DATA)/weather_montreal_utc_v2.tdjson temperatureSet \
	  --from 2012-07-14T12:00:00.000Z --to 2012-07-14T18:00:00.000Z
	build/senmark plot $(DATA)/weather_montreal_utc_v2.tdjson temperatureSet

build: install-build  ## Builds everything
	cmake --preset release
	cmake --build --preset release -j $(JOBS)

check: build  ## Builds everything and runs all tests
	ctest --preset release

asan: install-build  ## Runs all tests under the address, leak and undefined behaviour sanitizers
	cmake --preset asan-ubsan
	cmake --build --preset asan-ubsan -j $(JOBS)
	ctest --preset asan-ubsan

tsan: install-build  ## Runs all tests under the thread sanitizer
	cmake --preset tsan
	cmake --build --preset tsan -j $(JOBS)
	ctest --preset tsan

coverage: install-build install-coverage  ## Runs all tests and tells which lines they reach
	cmake --preset coverage
	cmake --build --preset coverage -j $(JOBS)
	find build-coverage -name '*.gcda' -delete
	ctest --preset coverage
	gcovr --root . --object-directory build-coverage --filter source/ --filter plugin/ --filter include/ \
	  --exclude-throw-branches --exclude-unreachable-branches --print-summary --html-details build-coverage/coverage.html

format: install-lint  ## Formats all C++ files
	$(FORMATTED) | xargs -r clang-format -i

format-check: install-lint  ## Fails when a C++ file is not formatted
	$(FORMATTED) | xargs -r clang-format --dry-run -Werror

lint: install-build install-lint  ## Runs clang-tidy over library, program, modules and public headers
	cmake --preset lint
	scripts/lint.sh build-lint $(JOBS)

bench: install-build install-bench  ## Builds the benchmarks; bench/README.md tells how to run them
	cmake --preset bench
	cmake --build --preset bench -j $(JOBS)

SECONDS_PER_TARGET ?= 60
fuzz: install-build install-fuzz  ## Runs every fuzz target for SECONDS_PER_TARGET seconds
	cmake --preset fuzz
	fuzz/run.sh $(SECONDS_PER_TARGET)

clean:  ## Removes all build folders
	rm -rf build build-*/

install-%:
	@scripts/install-deps.sh $*

#!/usr/bin/env python3
"""Mutation check: applies each single fault listed in mutants.txt to a copy of the tree, builds the
unit test binary, runs the tests of the fault's subsystem and records whether a test failed.

Usage: tools/mutation/run.py [--work DIR] [--only ID,...] [OUTPUT]
Each line of mutants.txt is `id @ file @ text @ replacement @ test group`; the text must occur exactly
once in the file, and the group names the directory under tests/ whose test suites are run (several joined by +). The
result table (id, caught or missed, the first failing tests) goes to OUTPUT, or to standard output.
Only the unit test binary is rebuilt for each mutant, with ccache, in DIR (default build-mutation).
Run it before and after changing tests: every mutant caught before must be caught after."""
import argparse, os, pathlib, re, shutil, subprocess, sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
TIMEOUT = 600


def read_mutants(path):
    mutants = []
    for line in path.read_text().splitlines():
        if not line.strip() or line.startswith('#'):
            continue
        fields = [f.strip() for f in line.split(' @ ')]
        if len(fields) != 5:
            sys.exit(f'bad mutant line: {line}')
        mutants.append(dict(zip(('id', 'file', 'text', 'replacement', 'group'), fields)))
    return mutants


def group_filter(tree, group):
    """The gtest filter of every suite defined in tests/GROUP (or GROUP+GROUP...), plain or parameterised."""
    suites = set()
    for source in (s for g in group.split('+') for s in (tree / 'tests' / g).glob('*.cpp')):
        suites.update(re.findall(r'^\s*TEST(?:_F|_P)?\(\s*(\w+)\s*,', source.read_text(), re.M))
    return ':'.join(f'{s}.*:*/{s}.*' for s in sorted(suites))


def sh(args, cwd, timeout=None):
    return subprocess.run(args, cwd=cwd, capture_output=True, text=True, timeout=timeout)


def prepare(work):
    """Copies the sources into WORK/tree and configures an optimised build of them in WORK/build."""
    tree = work / 'tree'
    if tree.exists():
        shutil.rmtree(tree)
    tree.mkdir(parents=True)
    for part in ('CMakeLists.txt', 'src', 'tests', 'tools', 'bench'):
        source = ROOT / part
        if source.is_dir():
            shutil.copytree(source, tree / part)
        else:
            shutil.copy2(source, tree / part)
    build = work / 'build'
    configure = ['cmake', '-S', str(tree), '-B', str(build), '-DCMAKE_BUILD_TYPE=Release',
                 '-DZEPHRIN_MATCH_TEST=OFF']
    if shutil.which('ccache'):
        configure.append('-DCMAKE_CXX_COMPILER_LAUNCHER=ccache')
    result = sh(configure, work)
    if result.returncode != 0:
        sys.exit(result.stderr)
    return tree, build


def build_tests(build):
    return sh(['nice', 'cmake', '--build', str(build), '-j2', '--target', 'zephrin_tests'], build)


def run_one(tree, build, mutant):
    path = tree / mutant['file']
    original = path.read_text()
    if original.count(mutant['text']) != 1:
        return 'unusable', f"text occurs {original.count(mutant['text'])} times"
    path.write_text(original.replace(mutant['text'], mutant['replacement']))
    try:
        if build_tests(build).returncode != 0:
            return 'unusable', 'does not compile'
        try:
            result = sh([str(build / 'zephrin_tests'), f"--gtest_filter={group_filter(tree, mutant['group'])}"],
                        build, TIMEOUT)
        except subprocess.TimeoutExpired:
            return 'caught', 'timeout'
        failed = re.findall(r'^\[  FAILED  \] (\S+\.\S+)', result.stdout, re.M)
        failed = list(dict.fromkeys(failed))
        if result.returncode == 0:
            return 'missed', ''
        return 'caught', ' '.join(failed[:3]) or f'exit {result.returncode}'
    finally:
        path.write_text(original)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('--work', default=str(ROOT / 'build-mutation'))
    parser.add_argument('--only', default='')
    parser.add_argument('output', nargs='?')
    args = parser.parse_args()
    mutants = read_mutants(ROOT / 'tools/mutation/mutants.txt')
    if args.only:
        wanted = set(args.only.split(','))
        mutants = [m for m in mutants if m['id'] in wanted]
    tree, build = prepare(pathlib.Path(args.work).resolve())
    if build_tests(build).returncode != 0:
        sys.exit('the unmutated tree does not build')
    for group in dict.fromkeys(m['group'] for m in mutants):
        if sh([str(build / 'zephrin_tests'), f'--gtest_filter={group_filter(tree, group)}'], build).returncode != 0:
            sys.exit(f'the unmutated tree fails the tests of {group}')
    out = open(args.output, 'w') if args.output else sys.stdout
    for mutant in mutants:
        verdict, detail = run_one(tree, build, mutant)
        print(f"{mutant['id']}\t{verdict}\t{detail}", file=out, flush=True)
    build_tests(build)


if __name__ == '__main__':
    main()

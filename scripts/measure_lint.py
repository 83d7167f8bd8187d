"""Prints how much processor time `camcfg lint` takes for media files of many sessions.

usage: measure_lint.py TOOL DIR    files are made in DIR
"""
import math
import os
import statistics
import sys

SIZES = [0, 10, 100, 1000, 10000, 100000]  # 0: what starting costs
RUNS = 11
STEEPEST = 1.1  # growth of the time: the size to this power
SOURCES = 30  # more have no place in a whitelist


def session(service, number):
    """A session that sends one cache: an entry of a service, by its number."""
    typed = f'<Channel Id="{number}" Type="{"MainVideo" if service == "NDI" else "Video"}"/>'
    return {
        "WEBSOCKET": f'<Channel Id="{number}" Name="ch{number}"/>',
        "RTSP": f'<MediaGroup Name="ch{number}"><Channel Id="{number}" Name="video"/></MediaGroup>',
        "RTMP": f'<Target Id="{number}" Enable="true" url="rtmp://192.0.2.1/live/{number}" '
                f'username="" password="">{typed}</Target>',
        "NDI": f'<Instance Id="{number}" Enable="true" DiscoveryServer="" GroupName="public" '
               f'MainStreamName="ch{number}">{typed}</Instance>',
        "SRT": f'<Instance Id="{number}" Mode="Caller" Hostname="relay-{number}.example.com" Port="9001">'
               f'<Stream Id="{number}" Default="1"><Channel Id="{number}"/></Stream></Instance>',
    }[service]


def media(sessions, mark):
    """A file with a cache for each session; the services have the sessions in turn."""
    services = ["WEBSOCKET", "RTSP", "RTMP", "NDI", "SRT"]
    lines = ["<Stream>", "<StreamSource>"]
    lines += [f'<VENC Id="{i}" Name="source{i}" ChnId="{i}"/>' for i in range(min(SOURCES, sessions))]
    lines += ["</StreamSource>", "<StreamCache>"]
    lines += [f'<Cache Id="{i}" Name="cache{i}" BufferSizeMB="8"><AllowedStreamSource '
              f'Id="{i % SOURCES}" {mark}="1"/></Cache>' for i in range(sessions)]
    lines += ["</StreamCache>", "</Stream>", "<LiveMediaService>"]
    for first, service in enumerate(services):
        entries = [session(service, i) for i in range(first, sessions, len(services))]
        lines += [f"<{service}>", *entries, f"</{service}>"]
    return "\n".join([*lines, "</LiveMediaService>", ""])


def processor_time(command):
    """Milliseconds, of the program and the system on its behalf; and the exit status."""
    process = os.posix_spawn(command[0], command, os.environ,
                             file_actions=[(os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0)])
    _, status, usage = os.wait4(process, 0)
    return (usage.ru_utime + usage.ru_stime) * 1e3, os.waitstatus_to_exitcode(status)


def measure(tool, directory, mark, expected):
    files = {}
    for size in SIZES:
        files[size] = os.path.join(directory, f"{mark}-{size}.xml")
        with open(files[size], "w", encoding="utf-8") as file:
            file.write(media(size, mark))
    times = {size: [] for size in SIZES}
    for _ in range(RUNS):
        for size, path in files.items():
            time, status = processor_time([tool, "lint", "--strict", path])
            if status != (expected if size else 0):
                sys.exit(f"lint of {path}: exit status {status}")
            times[size].append(time)
    return files, {size: statistics.median(times[size]) for size in SIZES}


def require_linear(times):
    least, most = SIZES[-2:]
    power = math.log((times[most] - times[0]) / (times[least] - times[0])) / math.log(most / least)
    if power > STEEPEST:
        sys.exit(f"the time grows as the size to the power of {power:.2f}, more than {STEEPEST}")
    return power


def main(tool, directory):
    files, clean = measure(tool, directory, "Default", 0)
    _, dirty = measure(tool, directory, "default", 1)
    powers = [require_linear(times) for times in (clean, dirty)]
    print("| sessions | KiB | nothing is found: ms | µs for each session "
          "| a finding for each cache: ms | µs for each session |")
    print("|---|---|---|---|---|---|")
    for size in SIZES:
        cells = [f"{size:,}", f"{os.path.getsize(files[size]) / 1024:,.0f}"]
        for times in (clean, dirty):
            each = f"{(times[size] - times[0]) * 1e3 / size:.0f}" if size >= 1000 else "-"
            cells += [f"{times[size]:.1f}", each]
        print(f"| {' | '.join(cells)} |")
    print(f"\nFrom {SIZES[-2]:,} to {SIZES[-1]:,} sessions the time grows as the size to the power of "
          f"{powers[0]:.2f} and {powers[1]:.2f}.")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])

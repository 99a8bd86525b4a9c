#!/usr/bin/env bash
# Renders a sequence as a job array on a real Slurm of one machine: one task is killed half way and
# requeued, and at the end every frame is whole and the very file of a direct render.
set -euo pipefail
drevin=$(realpath -m "${1:-$(dirname "${BASH_SOURCE[0]}")/../../build/release/bin/drevin}")
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/packages.sh
source scripts/packages.sh

frames=12
chunks=3

skip() { echo "Not tested on a farm: $1"; exit 0; }
fail() { echo "FAILED: $1" >&2; show_logs >&2; exit 1; }

[ "$(id -u)" -eq 0 ] || skip "Slurm's daemons need root"
(need_packages yes "${farm_packages[@]}") || skip "Slurm could not be installed"
[ -x "$drevin" ] || { echo "$drevin: not built; run ./test.sh first" >&2; exit 1; }

work=$(mktemp -d /tmp/drevin-farm.XXXXXX)
daemons=()
show_logs() { tail -n 30 "$work"/{munge,ctld,slurmd}.log "$work"/log.* 2>/dev/null || true; }
finish() {
  [ ${#daemons[@]} -eq 0 ] || kill -9 "${daemons[@]}" 2>/dev/null || true
  wait 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT

# until_true SECONDS COMMAND...: whether the command succeeds within that time.
until_true() {
  local end=$((SECONDS + $1))
  shift
  until "$@"; do
    ((SECONDS < end)) || return 1
    sleep 0.1
  done
}

write_configuration() {
  local host port=$((20000 + RANDOM % 10000))
  host=$(hostname -s)
  mkdir -m 755 "$work"/{munge,state,spool}
  chmod 755 "$work"
  (umask 077; head -c 1024 /dev/urandom > "$work/munge/key")
  export SLURM_CONF=$work/slurm.conf
  cat > "$SLURM_CONF" <<EOF
ClusterName=drevin
SlurmctldHost=$host(127.0.0.1)
SlurmctldPort=$port
SlurmdPort=$((port + 1))
SlurmUser=root
AuthType=auth/munge
AuthInfo=socket=$work/munge/socket,cred_expire=5
StateSaveLocation=$work/state
SlurmdSpoolDir=$work/spool
SlurmctldPidFile=$work/ctld.pid
SlurmdPidFile=$work/slurmd.pid
ProctrackType=proctrack/pgid
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
MpiDefault=none
ReturnToService=2
KillWait=5
MinJobAge=3600
SchedulerParameters=batch_sched_delay=0,sched_interval=2
NodeName=$host NodeAddr=127.0.0.1 CPUs=$(nproc)
PartitionName=all Nodes=ALL Default=YES State=UP
EOF
  echo "CgroupPlugin=cgroup/v1" > "$work/cgroup.conf"
}

start_daemons() {
  munged --foreground --force --key-file="$work/munge/key" --socket="$work/munge/socket" \
    --pid-file="$work/munge/pid" --seed-file="$work/munge/seed" > "$work/munge.log" 2>&1 &
  daemons+=($!)
  until_true 10 test -S "$work/munge/socket" || { show_logs; skip "munged does not start"; }
  slurmctld -D > "$work/ctld.log" 2>&1 &
  daemons+=($!)
  slurmd -D > "$work/slurmd.log" 2>&1 &
  daemons+=($!)
  until_true 30 node_is_idle || { show_logs; skip "slurmctld and slurmd do not start"; }
}
node_is_idle() { sinfo --noheader --format=%T 2>/dev/null | grep -qx idle; }

# Frames of the street whose focus is pulled; the folder takes the place of OUT.
render_arguments() {
  printf '%s\n' --input "$work/street.exr" --frames "1-$frames" --channels rgb --region 0,0,1280,400 \
    --set focalPlane@1=2 --set "focalPlane@$frames=6" --set multiplier=60 --output "$1/f.####.exr"
}

task_state() { scontrol show job "${job}_$1" | sed -n 's/.*JobState=\([A-Z_]*\).*/\1/p'; }
has_state() { [ "$(task_state "$1")" = "$2" ]; }
frames_of_task_2() { find "$work/array" -name 'f.000[5-8].exr' | wc -l; }
task_2_has_a_frame() { [ "$(frames_of_task_2)" -ge 1 ]; }
all_are_done() { for task in $(seq $chunks); do has_state "$task" COMPLETED || return 1; done; }

kill_task_2_half_way() {
  until_true 120 task_2_has_a_frame || fail "task 2 makes no frame"
  pkill -KILL -f -- "$work/array/f.####.exr.* --chunk 2/$chunks" || fail "task 2 does not run"
  [ "$(frames_of_task_2)" -lt 4 ] || fail "task 2 was done before it was killed"
  until_true 30 has_state 2 FAILED || fail "the killed task is $(task_state 2)"
  echo "Task 2 was killed with $(frames_of_task_2) of its 4 frames made"
}

same_as_direct() {
  local count
  count=$(find "$work/array" -type f | wc -l)
  [ "$count" -eq $frames ] || fail "$count files of $frames: $(ls -A "$work/array")"
  for file in "$work"/direct/f.*.exr; do
    cmp "$file" "$work/array/$(basename "$file")" || fail "$(basename "$file") is not that of a direct render"
  done
}

write_configuration
start_daemons
"$drevin" demo "$work/scene" > /dev/null
mv "$work/scene/street.exr" "$work/street.exr"
mkdir "$work/direct" "$work/array"

mapfile -t arguments < <(render_arguments "$work/array")
job=$(DREVIN_COMMAND=$drevin sbatch --parsable --array=1-$chunks --cpus-per-task=1 --chdir="$work" \
  --output="$work/log.%a" farm/drevin.sbatch $chunks "${arguments[@]}")
kill_task_2_half_way
scontrol requeue "${job}_2"
mapfile -t arguments < <(render_arguments "$work/direct")
"$drevin" render "${arguments[@]}" --quiet
until_true 300 all_are_done || fail "tasks end as $(for t in $(seq $chunks); do task_state "$t"; done | xargs)"
grep -q "attempt 2" "$work/log.2" || fail "task 2 was not started again"
same_as_direct
echo "All $frames frames of the array are those of a direct render"

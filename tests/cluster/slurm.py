"""A Slurm cluster of one node with four slots, with keys, sockets and ports of its own below a folder."""

import os
import pathlib
import pwd
import shutil
import signal
import socket
import subprocess
import time

CONFIGURATION = """ClusterName=vrxtest
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={controlPort}
SlurmdPort={nodePort}
SlurmUser=root
AuthType=auth/munge
AuthInfo=socket={folder}/munge/socket
CredType=cred/munge
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
MpiDefault=none
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
SchedulerParameters=sched_interval=1,batch_sched_delay=0
SlurmdParameters=config_overrides
ReturnToService=2
HealthCheckProgram={health}
HealthCheckInterval=0
NodeName=node NodeHostname={host} NodeAddr=127.0.0.1 Port={nodePort} CPUs=4 State=UNKNOWN
PartitionName=all Nodes=node Default=YES MaxTime=10 State=UP OverSubscribe=NO
"""


def freePort():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def waitFor(what, seconds, holds):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if holds():
            return
        time.sleep(0.2)
    raise RuntimeError("%s: not within %d seconds" % (what, seconds))


class Cluster:
    def __init__(self, folder, health):
        self.folder = pathlib.Path(folder)
        self.processes = []
        for name in ("state", "spool", "munge"):
            (self.folder / name).mkdir(parents=True)
        for parent in [self.folder, *self.folder.parents]:  # the keeper of credentials is another user
            if parent.stat().st_uid == os.getuid() and parent != pathlib.Path("/"):
                parent.chmod(parent.stat().st_mode | 0o011)
        self.configuration = self.folder / "slurm.conf"
        self.configuration.write_text(CONFIGURATION.format(
            host=socket.gethostname(), folder=self.folder, controlPort=freePort(), nodePort=freePort(), health=health))
        self.environment = {**os.environ, "SLURM_CONF": str(self.configuration)}

    def __enter__(self):
        try:
            self.startMunge()
            self.start("slurmctld", "slurmctld", "-D", "-c", "-f", self.configuration)
            self.start("slurmd", "slurmd", "-D", "-N", "node", "-f", self.configuration)
            waitFor("a node that is idle", 60, lambda: self.nodeState() == "idle")
        except Exception as problem:
            self.stop()
            raise RuntimeError("Slurm cannot run here: %s\n%s" % (problem, self.logs())) from problem
        return self

    def __exit__(self, *_):
        self.stop()

    def startMunge(self):
        munge = self.folder / "munge"
        (munge / "key").write_bytes(os.urandom(128))
        (munge / "key").chmod(0o400)
        owner = pwd.getpwnam("munge")
        for path in (munge / "key", munge):
            shutil.chown(path, owner.pw_uid, owner.pw_gid)
        munge.chmod(0o755)
        self.start("munged", "munged", "-F", "-f", "--socket=%s/socket" % munge, "--key-file=%s/key" % munge,
                   "--pid-file=%s/pid" % munge, "--log-file=%s/log" % munge, "--seed-file=%s/seed" % munge,
                   user=owner.pw_uid, group=owner.pw_gid)
        waitFor("the keeper of credentials", 20, (munge / "socket").exists)

    def start(self, name, *command, **who):
        log = open(self.folder / (name + ".out"), "wb")
        self.processes.append((name, subprocess.Popen([str(part) for part in command], stdout=log, stderr=log,
                                                      env=self.environment, start_new_session=True, **who)))

    def stop(self):
        for _, process in reversed(self.processes):
            if process.poll() is None:
                process.terminate()
                try:
                    process.wait(10)
                except subprocess.TimeoutExpired:
                    os.killpg(process.pid, signal.SIGKILL)
                    process.wait()

    def logs(self):
        texts = [path.name + ":\n" + "\n".join(path.read_text(errors="replace").splitlines()[-8:])
                 for path in sorted(self.folder.glob("*.log")) + sorted(self.folder.glob("*.out"))
                 + [self.folder / "munge" / "log"] if path.exists()]
        return "\n".join(texts)

    def run(self, *command):
        done = subprocess.run([str(part) for part in command], env=self.environment, cwd=self.folder,
                              capture_output=True, text=True, check=False, timeout=60)
        if done.returncode != 0:
            raise RuntimeError("%s ends with %d: %s" % (command[0], done.returncode, done.stderr))
        return done.stdout.strip()

    def nodeState(self):
        done = subprocess.run(["sinfo", "-h", "-N", "-o", "%T"], env=self.environment, capture_output=True, text=True,
                              check=False, timeout=30)
        return done.stdout.strip()

    def reason(self):
        return self.run("sinfo", "-h", "-N", "-o", "%E")

    def finished(self, job):
        return self.run("squeue", "-h", "-j", job, "-t", "all", "-o", "%T").splitlines()

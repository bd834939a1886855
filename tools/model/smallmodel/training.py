# SPDX-License-Identifier: Apache-2.0
# SPDX-FileCopyrightText: 2026 The Sorvane developers
"""Trains the network on spoken texts.

    python3 -m smallmodel.training SPEECH VOCABULARY.json RUN --steps 20000

RUN keeps state.pt, from which the same command goes on with --resume, and average.npz, the moving
average of the weights, which is what gets exported.  The rate of learning depends on the step alone:
it rises over the first steps, stays, and falls in a line over the last --decay steps.

The loss is a plain cross-entropy along the path that the words' times give; no lattice is needed.
"""

import argparse
import os
import time
from dataclasses import dataclass
from pathlib import Path
from random import Random

import numpy as np
import torch
import torch.distributed as distributed
import torch.multiprocessing as multiprocessing
import torch.nn.functional as functional
from torch import Tensor

from .batches import Batch, produce
from .geometry import GEOMETRY
from .network import Network, exported
from .optimiser import Optimiser, shared

BLANK_WEIGHT = 0.7
DURATION_WEIGHT = 0.3
FRAME_TOKEN_WEIGHT = 0.3
FRAME_BLANK_WEIGHT = 0.3

# Tokens that the prediction network sees are replaced at random this often, so that it learns to
# go on after an error.
REPLACED_TOKENS = 0.12

GRADIENT_NORM = 2.0
FINAL_RATE = 0.02  # of the highest rate
AVERAGE_DECAY = 0.996
AVERAGE_EVERY = 4

QUEUED_BATCHES = 12
REUSED_BATCHES = 60
REPORT_EVERY = 50
SAVE_EVERY = 250


@dataclass
class Options:
    speech: Path
    vocabulary: Path
    run: Path
    initial: Path | None
    resume: bool
    steps: int
    warm_up: int
    decay: int
    rate: float
    seconds: float
    reuse: float
    seed: int
    processes: int


def losses(network: Network, batch: Batch) -> dict[str, Tensor]:
    """The loss, its parts per token or place, and the share of right tokens."""
    blank = GEOMETRY.blank
    mel, valid, tokens, places = (
        torch.from_numpy(array) for array in (batch.mel.astype(np.float32), batch.valid, batch.tokens, batch.places)
    )
    window, frame, before, token, duration = places.unbind(1)
    replaced = torch.rand(tokens.shape) < REPLACED_TOKENS
    seen = torch.where(replaced, torch.randint(0, GEOMETRY.vocabulary, tokens.shape), tokens)
    with torch.autocast("cpu", dtype=torch.bfloat16):
        encoded = network.encode(mel, valid).float()
        projected = network.encoder_projection(encoded)[window, frame]
        frame_scores = network.frame_tokens(encoded[window, frame])
    predicted = network.predict(seen)[window, before]
    with torch.autocast("cpu", dtype=torch.bfloat16):
        scores = network.joint_output((projected + predicted).relu())
    scores, frame_scores = scores.float(), frame_scores.float()

    token_loss = functional.cross_entropy(scores[:, : blank + 1], token, reduction="none")
    duration_loss = functional.cross_entropy(scores[:, blank + 1 :], duration, reduction="none")
    frame_loss = functional.cross_entropy(frame_scores, token, reduction="none")
    is_blank = token == blank
    count = (~is_blank).sum().clamp(min=1)
    weight = torch.where(is_blank, BLANK_WEIGHT, 1.0)
    total = ((token_loss + DURATION_WEIGHT * duration_loss) * weight).sum()
    total = total + FRAME_TOKEN_WEIGHT * (frame_loss * torch.where(is_blank, FRAME_BLANK_WEIGHT, 1.0)).sum()
    right = scores[:, : blank + 1].argmax(1) == token
    return {
        "loss": total / count,
        "token": token_loss[~is_blank].mean(),
        "blank": token_loss[is_blank].mean(),
        "duration": duration_loss.mean(),
        "right": right[~is_blank].float().mean(),
    }


class BatchQueue:
    """Batches from a process of their own; some are taken a second time when the process is behind."""

    def __init__(self, options: Options, rank: int):
        context = multiprocessing.get_context("spawn")
        self._queue = context.Queue(QUEUED_BATCHES)
        self._kept: list[Batch] = []
        self._reuse = options.reuse
        self._random = Random(options.seed + rank)
        seed = options.seed * 1000 + rank + int(time.time())
        arguments = (options.speech, options.vocabulary, options.seconds, seed, self._queue)
        context.Process(target=produce, args=arguments, daemon=True).start()

    def next(self) -> Batch:
        full = len(self._kept) >= REUSED_BATCHES
        if full and (self._random.random() < self._reuse or self._queue.empty()):
            return self._kept.pop(self._random.randrange(len(self._kept)))
        batch = self._queue.get()
        self._kept.append(batch)
        if len(self._kept) > 2 * REUSED_BATCHES:
            self._kept.pop(0)
        return batch


class Average:
    """The moving average of a network's weights."""

    def __init__(self, network: Network):
        self.state = {name: value.clone() for name, value in network.state_dict().items()}

    @torch.no_grad()
    def add(self, network: Network, step: int) -> None:
        if step % AVERAGE_EVERY == 0:
            decay = min(AVERAGE_DECAY, step / (step + 60)) ** AVERAGE_EVERY
            for name, value in network.state_dict().items():
                self.state[name].mul_(decay).add_(value, alpha=1 - decay)


def rate_at(step: int, options: Options) -> float:
    """The rate of learning at a step."""
    rise = min(1.0, (step + 1) / options.warm_up)
    remaining = min(1.0, (options.steps - step) / max(options.decay, 1))
    return options.rate * min(rise, max(remaining, FINAL_RATE))


class Trainer:
    """One of the processes, which average their gradients at every step."""

    def __init__(self, options: Options, rank: int):
        torch.manual_seed(options.seed + 77 * rank)
        self._options, self._rank = options, rank
        self._network = initial_network(options)
        self._optimiser = Optimiser(self._network, options.rate)
        self._average = Average(self._network)
        self._step, self._hours = 0, 0.0
        if options.resume:
            self._restore()
        self._batches = BatchQueue(options, rank)

    def run(self) -> None:
        report: list[dict[str, float]] = []
        started = time.time()
        while self._step < self._options.steps:
            report.append(self._train(self._batches.next()))
            if self._rank == 0 and self._step % REPORT_EVERY == 0:
                self._report(report, time.time() - started)
                report = []
            if self._rank == 0 and (self._step % SAVE_EVERY == 0 or self._step == self._options.steps):
                self._save()

    def _train(self, batch: Batch) -> dict[str, float]:
        parts = losses(self._network, batch)
        self._optimiser.forget_gradients()
        parts["loss"].backward()
        self._share_gradients()
        norm = torch.nn.utils.clip_grad_norm_(self._network.parameters(), GRADIENT_NORM)
        if torch.isfinite(norm):
            self._optimiser.step(rate_at(self._step, self._options))
        self._step += 1
        self._hours += self._options.processes * batch.valid.sum() * GEOMETRY.frame_seconds / 3600
        self._average.add(self._network, self._step)
        return {name: float(value.detach()) for name, value in parts.items()} | {"norm": float(norm)}

    def _share_gradients(self) -> None:
        if self._options.processes == 1:
            return
        gradients = [parameter.grad for parameter in self._network.parameters() if parameter.grad is not None]
        for gradient, total in zip(gradients, shared(gradients)):
            gradient.copy_(total / self._options.processes)

    def _report(self, report: list[dict[str, float]], seconds: float) -> None:
        means = "  ".join(f"{name} {np.mean([entry[name] for entry in report]):.3f}" for name in report[0])
        line = f"step {self._step}  hours {self._hours:.1f}  minutes {seconds / 60:.1f}  {means}"
        print(line, flush=True)
        with (self._options.run / "log.txt").open("a", encoding="utf-8") as log:
            log.write(line + "\n")

    def _save(self) -> None:
        run = self._options.run
        state = {
            "network": self._network.state_dict(),
            "average": self._average.state,
            "optimiser": self._optimiser.state(),
            "step": self._step,
            "hours": self._hours,
        }
        torch.save(state, run / "state.partial")
        os.replace(run / "state.partial", run / "state.pt")
        np.savez(run / "partial.npz", **exported(dict(self._average.state)))
        os.replace(run / "partial.npz", run / "average.npz")

    def _restore(self) -> None:
        state = torch.load(self._options.run / "state.pt")
        self._network.load_state_dict(state["network"])
        self._average.state = state["average"]
        self._optimiser.restore(state["optimiser"])
        self._step, self._hours = state["step"], state["hours"]


def initial_network(options: Options) -> Network:
    """New, with quiet residual branches, or with given weights."""
    network = Network()
    with torch.no_grad():
        for block in network.blocks:
            for layer in (block.attention_output, block.convolution_output, block.contract):
                layer.weight.mul_(0.5)
    if options.initial:
        with np.load(options.initial) as weights:
            network.load_weights(dict(weights))
    return network


def work(rank: int, options: Options) -> None:
    """The body of one process."""
    torch.set_num_threads(1)
    if options.processes > 1:
        meeting_place = f"file://{(options.run / 'meeting').absolute()}"
        distributed.init_process_group("gloo", init_method=meeting_place, rank=rank, world_size=options.processes)
    Trainer(options, rank).run()


def read_options() -> Options:
    parser = argparse.ArgumentParser(description="Trains the network on spoken texts.")
    parser.add_argument("speech", type=Path, help="folder of shards")
    parser.add_argument("vocabulary", type=Path)
    parser.add_argument("run", type=Path)
    parser.add_argument("--initial", type=Path, help="weights to start from (.npz)")
    parser.add_argument("--resume", action="store_true", help="go on from the run's state")
    parser.add_argument("--steps", type=int, default=20_000, help="counted from the run's beginning")
    parser.add_argument("--warm-up", type=int, default=300, help="steps")
    parser.add_argument("--decay", type=int, default=5_000, help="last steps, over which the rate falls")
    parser.add_argument("--rate", type=float, default=1.2e-3, help="highest rate of learning")
    parser.add_argument("--seconds", type=float, default=90, help="audio a step and process")
    parser.add_argument("--reuse", type=float, default=0.35, help="share of batches taken a second time")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--processes", type=int, default=2, help="of one thread each")
    return Options(**vars(parser.parse_args()))


def main() -> None:
    options = read_options()
    options.run.mkdir(parents=True, exist_ok=True)
    (options.run / "meeting").unlink(missing_ok=True)
    if options.processes == 1:
        work(0, options)
    else:
        multiprocessing.spawn(work, (options,), options.processes)


if __name__ == "__main__":
    main()

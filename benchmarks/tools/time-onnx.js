// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
//
// Loads a stage's ONNX graph, times it, and writes its outputs.
//
// Usage: node time-onnx.js STAGE_FOLDER THREADS SECONDS

const fs = require("fs");
const path = require("path");
const ort = require("onnxruntime-node");

const minimumRuns = 3;

function readInputs(folder, shapes) {
  const inputs = {};
  for (const [name, shape] of Object.entries(shapes)) {
    const bytes = fs.readFileSync(path.join(folder, `${name}.f32`));
    const values = new Float32Array(bytes.buffer, bytes.byteOffset, bytes.byteLength / 4);
    inputs[name] = new ort.Tensor("float32", values, shape);
  }
  return inputs;
}

async function main() {
  const [folder, threads, seconds] = process.argv.slice(2);
  const features = JSON.parse(fs.readFileSync(path.join(folder, "features.json")));
  const loadStart = performance.now();
  const session = await ort.InferenceSession.create(path.join(folder, "stage.onnx"), {
    intraOpNumThreads: Number(threads),
    interOpNumThreads: 1,
    graphOptimizationLevel: "all",
    executionProviders: ["cpu"],
  });
  const loadMilliseconds = performance.now() - loadStart;

  const inputs = readInputs(folder, features.inputs);
  const outputs = await session.run(inputs);
  for (const [name, tensor] of Object.entries(outputs))
    fs.writeFileSync(path.join(folder, `${name}.onnx.f32`), Buffer.from(tensor.data.buffer, tensor.data.byteOffset, tensor.data.byteLength));

  const times = [];
  const processorStart = process.cpuUsage();
  const start = performance.now();
  while (times.length < minimumRuns || performance.now() - start < 1000 * seconds) {
    const before = performance.now();
    await session.run(inputs);
    times.push(performance.now() - before);
  }
  const processor = process.cpuUsage(processorStart);
  const processorMilliseconds = (processor.user + processor.system) / 1000 / times.length;
  const peakMegabytes = process.resourceUsage().maxRSS / 1024;
  console.log(JSON.stringify({ loadMilliseconds, peakMegabytes, processorMilliseconds, times }));
}

main();

// SPDX-License-Identifier: Apache-2.0
// SPDX-FileCopyrightText: 2026 The Sorvane developers
#include "Plan/Lowering.h"

#include <memory>

namespace MLProgram {

namespace {

// An operand of the node: views of memory, or a text.
struct BoundArgument {
    std::string name;
    std::vector<View> views;
    std::string text;
    bool isText = false;
};

BoundArgument boundArgument(Lowering& lowering, const Argument& argument)
{
    BoundArgument bound { argument.name, {}, {}, false };
    for (const ValueIndex value : argument.values) {
        const auto& constant = lowering.graph().values[value].constant;
        if (constant && constant->isText()) {
            bound.text = constant->text();
            bound.isText = true;
        } else {
            bound.views.push_back(lowering.denseView(value));
        }
    }
    return bound;
}

// What the operation keeps between runs: names and texts live as long as the operands that point to them.
struct Call {
    std::string operation;
    std::vector<BoundArgument> arguments;
    std::vector<View> outputs;
    int opset = 17;

    Operands operands(const Memory& memory) const
    {
        Operands operands(operation, opset);
        for (const BoundArgument& argument : arguments) {
            if (argument.isText) {
                operands.add(argument.name, std::string_view(argument.text));
                continue;
            }
            Operands::List list;
            for (const View& view : argument.views)
                list.push_back(memory.tensor(view));
            operands.add(argument.name, std::move(list));
        }
        return operands;
    }
};

} // namespace

void lowerToReference(Lowering& lowering, const GraphNode& node)
{
    auto call = std::make_shared<Call>();
    call->operation = node.operation;
    call->opset = node.opset;
    Step step { stepName(node.operation, {}), {}, {}, {} };
    for (const Argument& argument : node.arguments) {
        call->arguments.push_back(boundArgument(lowering, argument));
        for (const View& view : call->arguments.back().views)
            step.reads.push_back(view.buffer);
    }
    for (const ValueIndex output : node.outputs) {
        const TensorType& type = lowering.graph().type(output);
        const View view = lowering.newView(type.element, type.shape, denseStrides(type.shape));
        call->outputs.push_back(view);
        step.writes.push_back(view.buffer);
        lowering.define(output, view);
    }
    step.bind = [call](const Memory& memory) -> std::function<void()> {
        std::vector<TensorView> outputs;
        for (const View& view : call->outputs)
            outputs.push_back(memory.tensor(view));
        return [call, operands = call->operands(memory), outputs, definition = findOperation(call->operation)] {
            definition->evaluate(operands, outputs);
        };
    };
    lowering.emit(std::move(step));
}

} // namespace MLProgram

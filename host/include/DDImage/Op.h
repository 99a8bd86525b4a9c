#pragma once

/// The operator: what a node does, with inputs, controls, messages and the steps of a render.

#include <memory>

#include "DDImage/Description.h"
#include "DDImage/Hash.h"
#include "DDImage/Knob.h"
#include "DDImage/MetaData.h"
#include "DDImage/OutputContext.h"

class Node;

namespace DD {
namespace Image {

class Iop;
class Op;
class Knob_Closure;

using Knob_Callback = Knob_Closure&;
using OpConstructor = Op* (*)(Node*);

class DD_EXPORT Op {
 public:
  /// A class of operators under its name, known from the moment its library is loaded.
  class DD_EXPORT Description : public DD::Image::Description {
   public:
    /// Always inlined, so that each library gets its own build string: an exported copy could be
    /// resolved to that of another library.
    __attribute__((always_inline)) Description(const char* className, OpConstructor build)
        : DD::Image::Description(className, DDIMAGE_COMPILED), build_(build) {}
    Op* constructor(Node* node) const { return build_(node); }

   private:
    OpConstructor build_;
  };

  enum GenerateType { OUTPUT_OP, INPUT_OP, EXECUTABLE_INPUT };

  explicit Op(Node* node);
  virtual ~Op();
  Op(const Op&) = delete;
  Op& operator=(const Op&) = delete;

  /// Name of the class; the same as that of its description.
  virtual const char* Class() const = 0;
  virtual const char* node_help() const = 0;

  // Controls
  virtual void knobs(Knob_Callback f);
  /// Called after a change by hand, and for Knob::showPanel and Knob::inputChange. After a 0 it is
  /// never called again for that control. The base returns 0.
  virtual int knob_changed(Knob* knob);
  /// The control of that script name, or null.
  Knob* knob(const char* name) const;

  // Inputs
  void inputs(int count);
  int inputs() const;
  /// The connected operator, else the stand-in from default_input, else null.
  Op* input(int n) const;
  Op* node_input(int n, GenerateType type = OUTPUT_OP,
                 const OutputContext* context = nullptr) const;
  /// True if `op` may be connected. The base takes any operator but null.
  virtual bool test_input(int n, Op* op) const;
  /// Stand-in for an unconnected input. The base has none.
  virtual Op* default_input(int n) const;
  virtual const char* input_label(int n, char* buffer) const;
  /// Rewires one input; `op` may be null. Overrides call the base.
  virtual void set_input(int n, Op* op, int input = 0, int offset = 0);

  // Steps
  /// Brings the operator's information up to date; returns at once if it already is. Messages of
  /// the validation before are dropped.
  void validate(bool for_real = true);
  /// The values of all controls, the hashes of the inputs and what append adds.
  Hash hash() const;
  virtual void append(Hash& hash);
  bool cached() const;
  void cached(bool value);

  // Metadata
  const MetaData::Bundle& fetchMetaData(const char* key) { return _fetchMetaData(key); }
  /// The base passes on what input 0 has.
  virtual const MetaData::Bundle& _fetchMetaData(const char* key);

  // Messages and state
  /// Puts the operator in error with a printf-style text: no further row is rendered.
  void error(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  /// Informs with a printf-style text.
  void warning(const char* format, ...) const __attribute__((format(printf, 2, 3)));
  /// True when the result is no longer wanted: long loops ask and return. Safe from any thread.
  bool aborted() const;
  /// Begins a stage of the preparations before the first row, by a printf-style name.
  void progressMessage(const char* format, ...) __attribute__((format(printf, 2, 3)));
  /// How much of the stage is done, from 0 to 1.
  void progressFraction(double fraction);
  void progressFraction(int done, int total);

  /// The context that this operator was made for.
  const OutputContext& outputContext() const;
  /// The context that the interface shows.
  const OutputContext& uiContext() const;

  /// This operator as an image operator, or null.
  virtual Iop* iop();
  virtual const Iop* iop() const;

  // embedded host

  struct State;
  /// What the host keeps of this operator; known to the host's library only.
  State& hostState() const { return *state_; }
  /// Opens once; later calls return at once until close(). Safe from any thread.
  void open();
  void close();
  /// Makes the next validate run again.
  void invalidate();
  /// Fills unconnected inputs with their stand-ins.
  void fillDefaultInputs();
  bool inError() const;
  /// True if a validate at this level would return at once.
  bool validatedAs(bool for_real) const;

 protected:
  virtual void _validate(bool for_real);
  virtual void _open();
  virtual void _close();
  virtual void _invalidate();

 private:
  std::unique_ptr<State> state_;
};

}  // namespace Image
}  // namespace DD
